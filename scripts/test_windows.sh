#!/usr/bin/env bash
# Cross-builds the module and the scripted engine for win-x64 and runs the module's JavaScript suites under Wine, in a
# real Windows node.exe; then loads the module in a host of another name.
set -euo pipefail
source "$(dirname "$0")/common.sh"

bash "$root/scripts/build.sh" win-x64 corvane_meeting_sdk scripted
source "$root/scripts/windows/wine.sh"

trap 'wineserver -k || true' EXIT
# The first program to touch the desktop starts it and waits for it: not a test's child, which node would wait for too.
"$wine" explorer.exe /desktop </dev/null >/dev/null 2>&1 &

CORVANE_MEETING_SDK_DIR=$(windows_path "$root/build/win-x64/scripted")
export CORVANE_MEETING_SDK_DIR

# A file of nine seconds takes fifty beside a busy machine's other work.
export CORVANE_TEST_TIMEOUT_MS=300000
status=0
say "== module, win-x64"
node_tests tests/module wine_run 1200 "$node_exe" || status=1

say "== a host by another name"
host_exe=$root/build/win-x64/host.exe
cmp -s "$node_exe" "$host_exe" || cp "$node_exe" "$host_exe"
(cd "$root" && wine_run 120 "$host_exe" --test-reporter=spec scripts/windows/host_name.test.js) || status=1
exit $status
