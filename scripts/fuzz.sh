#!/usr/bin/env bash
# fuzz.sh [--seconds N] [TARGET...]: fuzzes the readers of what comes from elsewhere, each for N seconds (60). What breaks
# one is left in build/fuzz/found: put it among the seeds in tests/fuzz/seeds when it is mended.
set -euo pipefail
source "$(dirname "$0")/common.sh"

seconds=60
if [[ ${1:-} == --seconds ]]; then
  seconds=${2:?usage: fuzz.sh [--seconds N] [TARGET...]}
  shift 2
fi
targets=("$@")
if ((${#targets[@]} == 0)); then
  mapfile -t targets < <(cd "$root/tests/fuzz/seeds" && printf '%s\n' *)
fi

bash "$root/scripts/setup.sh" build fuzz
bash "$root/scripts/build.sh" fuzz corvane_fuzz

status=0
mkdir -p "$root/build/fuzz/found"
for target in "${targets[@]}"; do
  seeds=$root/tests/fuzz/seeds/$target
  [[ -d $seeds ]] || die "no target $target"
  corpus=$root/build/fuzz/corpus/$target
  log=$root/build/fuzz/$target.log
  mkdir -p "$corpus"
  # Leaks are looked for at the end of a run: GLib's own caches would be taken for some after each input.
  if "$root/build/fuzz/tests/fuzz/corvane_fuzz" "--target=$target" -artifact_prefix="$root/build/fuzz/found/$target-" \
    -max_total_time="$seconds" -timeout=20 -rss_limit_mb=3000 -print_final_stats=1 "$corpus" "$seeds" >"$log" 2>&1; then
    say "$target: $(awk '/number_of_executed_units/ { print $2 }' "$log") executions, nothing found"
  else
    status=1
    say "$target: broken, see $log"
    grep -m 3 -E 'SUMMARY|promise was broken|CRITICAL' "$log" || tail -n 5 "$log"
  fi
done
exit $status
