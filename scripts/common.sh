# Shared by the scripts of this folder: sourced, never run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cache=${XDG_CACHE_HOME:-$HOME/.cache}/corvane-meeting-sdk

say() { printf '%s\n' "$*"; }

die() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# node_tests DIR [NODE...]: runs every *.test.js and *.test.mjs below DIR with node's runner, or with the given
# command in node's place. A folder without tests is a failure: it would pass by not being there.
node_tests() {
  local dir=$1
  shift
  local files=()
  mapfile -t files < <(cd "$root" && find "$dir" \( -name '*.test.js' -o -name '*.test.mjs' \) 2>/dev/null | sort)
  if ((${#files[@]} == 0)); then
    say "no tests in $dir" >&2
    return 1
  fi
  (cd "$root" && "${@:-node}" --test --test-reporter=spec --test-timeout="${CORVANE_TEST_TIMEOUT_MS:-120000}" "${files[@]}")
}

# cpp_files: every C++ file of the project, each ended by a zero byte.
cpp_files() {
  (cd "$root" && find . \( -name .git -o -name build -o -name node_modules \) -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 | sort -z)
}
