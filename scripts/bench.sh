#!/usr/bin/env bash
# bench.sh [NAME...]: sets up, builds and runs the benchmarks, all of them or the named ones.
set -euo pipefail
source "$(dirname "$0")/common.sh"

bash "$root/scripts/setup.sh" build bench >&2
bash "$root/scripts/build.sh" release corvane_meeting_sdk corvane_engine scripted bench_native players_bench >&2
exec node "$root/bench/run.js" "$@"
