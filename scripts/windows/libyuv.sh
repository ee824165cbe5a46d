#!/usr/bin/env bash
# Cross-builds libyuv for win-x64 from Debian's source package into the cache, once.
set -euo pipefail
source "$(dirname "$0")/../common.sh"

prefix=$cache/win-x64/libyuv
[[ -f $prefix/lib/libyuv.a ]] && exit 0
say "setup: building libyuv for win-x64 from Debian's source package"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work"/{sources,lists/partial,archives/partial,source}

# The system's own package sources, asked for source packages, in folders of our own: nothing of the system changes.
for file in /etc/apt/sources.list.d/*.sources; do
  [[ -f $file ]] && sed 's/^Types:.*/Types: deb-src/' "$file" >"$work/sources/$(basename "$file")"
done
if [[ -s /etc/apt/sources.list ]]; then
  sed -n 's/^deb /deb-src /p' /etc/apt/sources.list >"$work/sources/system.list"
fi
apt=(apt-get -qq
  -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$work/sources"
  -o "Dir::State::Lists=$work/lists" -o "Dir::Cache::Archives=$work/archives"
  -o Dir::Cache::pkgcache= -o Dir::Cache::srcpkgcache= -o "APT::Sandbox::User=$(id -un)")
"${apt[@]}" update
(cd "$work/source" && "${apt[@]}" source libyuv >/dev/null)

cmake -S "$work"/source/libyuv-*/ -B "$work/build" -G Ninja --log-level=ERROR -Wno-dev \
  -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-win-x64.cmake" -DCMAKE_BUILD_TYPE=Release
cmake --build "$work/build" --target yuv >"$work/log" 2>&1 || {
  tail -n 30 "$work/log" >&2
  die "libyuv did not build"
}
mkdir -p "$prefix/lib"
cp -r "$work"/source/libyuv-*/include "$prefix/"
# Last, and by renaming: the archive's presence is what says that all of it is there.
cp "$work/build/libyuv.a" "$prefix/lib/libyuv.a.new"
mv "$prefix/lib/libyuv.a.new" "$prefix/lib/libyuv.a"
