#!/usr/bin/env bash
# test_sanitized.sh asan|tsan: runs the C++ tests and the module's JavaScript suites with AddressSanitizer and
# UndefinedBehaviorSanitizer, or with ThreadSanitizer. Any report fails the test whose process made it.
set -euo pipefail
source "$(dirname "$0")/common.sh"

kind=${1:?usage: test_sanitized.sh asan|tsan}
suppressions=$root/scripts/sanitizers
case $kind in
  asan)
    runtime=libasan.so
    export ASAN_OPTIONS="abort_on_error=1:detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1"
    export UBSAN_OPTIONS="print_stacktrace=1"
    export LSAN_OPTIONS="suppressions=$suppressions/leak.supp:print_suppressions=0"
    ;;
  tsan)
    runtime=libtsan.so
    # The host is not instrumented: what it reads and writes through the C library is not judged, its locks count.
    export TSAN_OPTIONS="halt_on_error=1:exitcode=66:ignore_noninstrumented_modules=1:second_deadlock_stack=1:suppressions=$suppressions/thread.supp"
    ;;
  *) die "no sanitizer preset $kind" ;;
esac

# ThreadSanitizer's shadow memory does not fit round every random layout of the address space.
fixed=()
if [[ $kind == tsan ]] && setarch -R true 2>/dev/null; then
  fixed=(setarch -R)
fi

bash "$root/scripts/setup.sh" build test
${fixed[@]+"${fixed[@]}"} bash "$root/scripts/build.sh" "$kind" all

# node itself is not instrumented, so the runtime has to be there before it.
preload=$(gcc -print-file-name=$runtime)
[[ -e $preload ]] || die "the compiler has no $runtime"

ctest_labelled() {
  (cd "$root" && ${fixed[@]+"${fixed[@]}"} ctest --preset "$kind" --no-tests=error --progress "$@")
}

status=0
say "== cpp, $kind"
ctest_labelled -LE embedded || status=1
if [[ $kind == asan ]]; then
  say "== embedded engine, $kind"
  # Leaks are not looked for: GStreamer's plug-ins keep their own, and its threads end while the search reads them.
  ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 ctest_labelled -L embedded || status=1
fi

say "== module, $kind"
export CORVANE_MEETING_SDK_DIR=$root/build/$kind/scripted CORVANE_SANITIZER=$kind CORVANE_TEST_TIMEOUT_MS=600000
node_tests tests/module ${fixed[@]+"${fixed[@]}"} env "LD_PRELOAD=$preload" node || status=1
exit $status
