#!/usr/bin/env bash
# lint.sh [FILE...]: format and static analysis; clang-tidy on the named sources only when some are named.
set -euo pipefail
source "$(dirname "$0")/common.sh"

bash "$root/scripts/setup.sh" build test lint
cd "$root"

# With every part configured, so that compile_commands.json knows every source.
mkdir -p build/release
cmake --preset release >build/release/configure.log 2>&1 || {
  cat build/release/configure.log >&2
  die "configuring release failed"
}

status=0
say "== clang-format"
cpp_files | xargs -r -0 clang-format --dry-run -Werror || status=1

say "== clang-tidy"
if (($#)); then
  sources=("$@")
else
  # Only what the compilation database holds: the other system's sources are the other compiler's to check.
  mapfile -t sources < <(node -e '
    const root = process.cwd() + "/";
    const files = require("./build/release/compile_commands.json").map((entry) => entry.file);
    const ours = /^(proj|engine|tests|bench|examples)\//;
    const found = files.filter((file) => file.startsWith(root)).map((file) => file.slice(root.length));
    console.log([...new Set(found.filter((file) => ours.test(file)))].sort().join("\n"));')
fi
# Each failing source is named with its exit code: a tool that dies of a signal says nothing itself.
tidy() {
  local output code=0
  output=$(clang-tidy --quiet -p build/release "$1" 2>&1) || code=$?
  output=$(grep -v 'warnings\? generated\|^Suppressed\|^Use -header-filter' <<<"$output" || true)
  [[ -z $output ]] || printf '%s\n' "$output"
  ((code == 0)) || printf 'clang-tidy: %s: exit %d\n' "$1" "$code"
  return $((code != 0))
}
export -f tidy
printf '%s\0' "${sources[@]}" | xargs -r -0 -n 1 -P "$(nproc)" bash -c 'tidy "$1"' _ || status=1

((status)) || say "lint: ${#sources[@]} sources, nothing to report"
exit $status
