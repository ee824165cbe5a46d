#!/usr/bin/env bash
# lint.sh [FILE...]: format, static analysis and types; clang-tidy on the named sources only when some are named.
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
    const ours = /^(proj|engine|tests|bench)\//;
    const found = files.filter((file) => file.startsWith(root)).map((file) => file.slice(root.length));
    console.log([...new Set(found.filter((file) => ours.test(file)))].sort().join("\n"));')
fi
printf '%s\0' "${sources[@]}" |
  xargs -r -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build/release 2> >(grep -v 'warnings generated\|^Suppressed\|^Use -header-filter' >&2) ||
  status=1

say "== types"
if [[ -f tsconfig.json ]]; then
  npx --no-install tsc --noEmit -p tsconfig.json || status=1
fi

((status)) || say "lint: ${#sources[@]} sources, nothing to report"
exit $status
