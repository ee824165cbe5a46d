#!/usr/bin/env bash
# Formats every C++ file of the project in place.
set -euo pipefail
source "$(dirname "$0")/common.sh"

bash "$root/scripts/setup.sh" lint
cpp_files | (cd "$root" && xargs -r -0 clang-format -i)
