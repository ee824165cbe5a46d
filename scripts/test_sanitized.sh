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
    # The leak checker falls over the lists of per-thread memory of threads that are just ending: it gets none.
    export ASAN_OPTIONS="intercept_tls_get_addr=0:abort_on_error=1:detect_stack_use_after_return=1"
    ASAN_OPTIONS+=":strict_string_checks=1:check_initialization_order=1"
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

status=0
say "== cpp, $kind"
(cd "$root" && ${fixed[@]+"${fixed[@]}"} ctest --preset "$kind" --no-tests=error --progress) || status=1

say "== module, $kind"
export CORVANE_MEETING_SDK_DIR=$root/build/$kind/scripted CORVANE_SANITIZER=$kind CORVANE_TEST_TIMEOUT_MS=600000
node_tests tests/module ${fixed[@]+"${fixed[@]}"} env "LD_PRELOAD=$preload" node || status=1
exit $status
