#!/usr/bin/env bash
# demo.sh [ARG...]: sets up, builds and runs the demo; the arguments are the demo's own.
set -euo pipefail
source "$(dirname "$0")/common.sh"

# Set-up and build speak on stderr, so that what the demo prints can be piped.
bash "$root/scripts/setup.sh" build demo >&2
bash "$root/scripts/build.sh" release >&2
exec node "$root/demo/index.js" "$@"
