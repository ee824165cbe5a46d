#!/usr/bin/env bash
# Makes the Wine prefix of the tests, once.
set -euo pipefail
source "$(dirname "$0")/../common.sh"
source "$(dirname "$0")/wine.sh"

[[ -f $WINEPREFIX/ready ]] && exit 0
say "setup: making a Wine prefix in $WINEPREFIX"
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
wine_run 120 wineboot -i >/dev/null 2>&1 || die "wineboot failed"
wine_run 60 winecfg -v win10 >/dev/null 2>&1 || die "winecfg failed"
wineserver -w
touch "$WINEPREFIX/ready"
