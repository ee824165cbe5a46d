#!/usr/bin/env bash
# test_sanitized.sh asan|tsan|tsan-engine [SUITE...]: builds and runs suites with AddressSanitizer and
# UndefinedBehaviorSanitizer, or with ThreadSanitizer; when none is named cpp, module and rooms with asan, cpp and module
# with tsan, which leaves the embedded engine out, and cpp with tsan-engine. Any report fails the test whose process made it.
#   cpp      the C++ tests
#   module   JavaScript against the module over the scripted engine
#   rooms    with asan: JavaScript against the embedded engine's rooms, what takes a minute of it
#   engine   with asan: all of JavaScript against the embedded engine
set -euo pipefail
source "$(dirname "$0")/common.sh"

kind=${1:?usage: test_sanitized.sh asan|tsan|tsan-engine [SUITE...]}
shift
suites=("$@")
suppressions=$root/scripts/sanitizers
case $kind in
  asan)
    runtime=libasan.so
    ((${#suites[@]})) || suites=(cpp module rooms)
    # The leak checker falls over the lists of per-thread memory of threads that are just ending: it gets none.
    export ASAN_OPTIONS="intercept_tls_get_addr=0:abort_on_error=1:detect_stack_use_after_return=1"
    ASAN_OPTIONS+=":strict_string_checks=1:check_initialization_order=1"
    export UBSAN_OPTIONS="print_stacktrace=1"
    export LSAN_OPTIONS="suppressions=$suppressions/leak.supp:print_suppressions=0"
    ;;
  tsan | tsan-engine)
    runtime=libtsan.so
    if ((${#suites[@]} == 0)); then
      suites=(cpp)
      [[ $kind == tsan-engine ]] || suites+=(module)
    fi
    # The host is not instrumented: what it reads and writes through the C library is not judged, its locks count.
    export TSAN_OPTIONS="halt_on_error=1:exitcode=66:ignore_noninstrumented_modules=1:second_deadlock_stack=1:suppressions=$suppressions/thread.supp"
    ;;
  *) die "no sanitizer preset $kind" ;;
esac

# ThreadSanitizer's shadow memory does not fit round every random layout of the address space.
fixed=()
if [[ $kind == tsan* ]] && setarch -R true 2>/dev/null; then
  fixed=(setarch -R)
fi

bash "$root/scripts/setup.sh" build test
${fixed[@]+"${fixed[@]}"} bash "$root/scripts/build.sh" "$kind" all

# node itself is not instrumented, so the runtime has to be there before it.
preload=$(gcc -print-file-name=$runtime)
[[ -e $preload ]] || die "the compiler has no $runtime"
[[ $kind == tsan* ]] || preload+=:$root/build/$kind/tests/engine/libcorvane_early_memory.so

# over LIBRARIES PATH: the JavaScript suites at PATH against the module over the libraries in that folder of the build.
over() {
  CORVANE_MEETING_SDK_DIR=$root/build/$kind/$1 node_tests "$2" ${fixed[@]+"${fixed[@]}"} env "LD_PRELOAD=$preload" node
}

export CORVANE_SANITIZER=$kind CORVANE_TEST_TIMEOUT_MS=600000
status=0
for suite in "${suites[@]}"; do
  say "== $suite, $kind"
  case $kind-$suite in
    *-cpp) (cd "$root" && ${fixed[@]+"${fixed[@]}"} ctest --preset "$kind" --no-tests=error --progress) || status=1 ;;
    *-module) over scripted tests/module || status=1 ;;
    asan-rooms) for name in rooms rooms_screen rooms_state; do over . "tests/engine/$name.test.js" || status=1; done ;;
    asan-engine) over . tests/engine || status=1 ;;
    *) die "no suite $suite with $kind" ;;
  esac
done
exit $status
