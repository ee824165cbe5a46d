#!/usr/bin/env bash
# build.sh PRESET [TARGET...]: sets up, configures and builds; the module, its engine and the sample plug-ins when no target is named.
set -euo pipefail
source "$(dirname "$0")/common.sh"

preset=${1:?usage: build.sh PRESET [TARGET...]}
shift

case $preset in
  win-x64)
    bash "$root/scripts/setup.sh" windows
    defaults=(corvane_meeting_sdk corvane_plugins)
    ;;
  *)
    bash "$root/scripts/setup.sh" build
    defaults=(corvane_meeting_sdk corvane_engine corvane_plugins)
    ;;
esac
(($#)) || set -- "${defaults[@]}"

cd "$root"
mkdir -p "build/$preset"
log=build/$preset/configure.log
cmake --preset "$preset" >"$log" 2>&1 || {
  cat "$log" >&2
  die "configuring $preset failed"
}
quiet=()
[[ -t 1 ]] || quiet=(-- --quiet)
cmake --build "build/$preset" --target "$@" "${quiet[@]}"
