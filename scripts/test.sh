#!/usr/bin/env bash
# test.sh [SUITE...]: builds and runs the Linux suites, all of them or the named ones.
#   cpp      C++ tests of the module's parts, and of the embedded engine on real media
#   module   JavaScript against the module over the scripted engine
#   engine   JavaScript against the module over the embedded engine
#   package  the package's face: loader and typings
set -euo pipefail
source "$(dirname "$0")/common.sh"

suites=("$@")
((${#suites[@]})) || suites=(cpp module engine package)

bash "$root/scripts/setup.sh" build test
bash "$root/scripts/build.sh" release all

status=0
for suite in "${suites[@]}"; do
  say "== $suite"
  case $suite in
    cpp) (cd "$root" && ctest --preset release --no-tests=error --progress) || status=1 ;;
    module) CORVANE_MEETING_SDK_DIR=$root/build/release/scripted node_tests tests/module || status=1 ;;
    engine) CORVANE_MEETING_SDK_DIR=$root/build/release node_tests tests/engine || status=1 ;;
    package) CORVANE_MEETING_SDK_DIR=$root/build/release node_tests tests/package || status=1 ;;
    *) die "no suite $suite" ;;
  esac
done
exit $status
