#!/usr/bin/env bash
# setup.sh GROUP...: installs what the named groups of tasks need and the machine lacks, from Debian and npm.
# Says what it installs; says and does nothing when all is there.
set -euo pipefail
source "$(dirname "$0")/common.sh"

declare -A packages=(
  [build]="g++ cmake ninja-build pkg-config libyuv-dev libpng-dev nlohmann-json3-dev
           libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev
           libwebrtc-audio-processing-dev libsoundtouch-dev
           libxcb1-dev libxcb-composite0-dev libxcb-damage0-dev libxcb-randr0-dev libxcb-res0-dev libxcb-shm0-dev
           libxcb-xfixes0-dev
           gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-libav gstreamer1.0-alsa
           libsoup-3.0-dev gstreamer1.0-plugins-bad gstreamer1.0-plugins-ugly gstreamer1.0-nice janus"
  [test]="libgtest-dev libgmock-dev opencv-data xvfb x11-utils"
  [demo]=""
  [bench]="xvfb x11-utils"
  [windows]="g++-mingw-w64-x86-64-posix wine64 cmake ninja-build nlohmann-json3-dev dpkg-dev xz-utils"
  [lint]="clang-format clang-tidy"
  [fuzz]="clang"
)

install_packages() {
  local missing=() name
  for name in "$@"; do
    [[ $(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null) == installed ]] || missing+=("$name")
  done
  ((${#missing[@]})) || return 0

  local as_root=()
  if ((EUID != 0)); then
    as_root=(sudo)
    if ! command -v sudo >/dev/null || ! { sudo -n true 2>/dev/null || [[ -t 0 ]]; }; then
      die "these Debian packages are missing and neither root nor sudo is at hand to install them: ${missing[*]}"
    fi
  fi
  say "setup: installing from Debian: ${missing[*]}"
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 </dev/null; then
    tail -n 20 "$log" >&2
    rm -f "$log"
    die "apt-get could not install: ${missing[*]}"
  fi
  rm -f "$log"
}

# npm_ci DIR: brings DIR/node_modules to what its lockfile says, to the letter.
npm_ci() {
  local dir=$1
  shift
  [[ $dir/node_modules/.package-lock.json -nt $dir/package-lock.json ]] && return 0
  say "setup: installing from npm: the packages of $dir/package-lock.json"
  (cd "$dir" && npm ci --include=dev --ignore-scripts --no-audit --no-fund --loglevel=error "$@" >/dev/null)
  touch "$dir/node_modules/.package-lock.json"
}

# The Windows node.exe and its test prefix live outside the tree: they are large, and shared by every clone.
setup_windows() {
  local node_dir=$cache/win-x64/node
  mkdir -p "$node_dir"
  local file
  for file in package.json package-lock.json; do
    cmp -s "$root/scripts/windows/$file" "$node_dir/$file" || cp "$root/scripts/windows/$file" "$node_dir/$file"
  done
  npm_ci "$node_dir" --force
  bash "$root/scripts/windows/libyuv.sh"
  bash "$root/scripts/windows/wine_prefix.sh"
}

(($#)) || die "usage: setup.sh GROUP..., of: ${!packages[*]}"
wanted=()
for group in "$@"; do
  [[ -v packages[$group] ]] || die "no group $group; there are: ${!packages[*]}"
  read -r -d '' -a names <<<"${packages[$group]}" || true
  wanted+=("${names[@]}")
done

command -v dpkg-query >/dev/null ||
  die "this is not a Debian system; install the equivalents of: ${wanted[*]}; then build with cmake --preset release"
install_packages "${wanted[@]}"

command -v node >/dev/null && command -v npm >/dev/null || die "Node.js 20 or later with npm is needed"
(($(node -p 'process.versions.node.split(".")[0]') >= 20)) || die "Node.js 20 or later is needed, found $(node --version)"
npm_ci "$root"

for group in "$@"; do
  [[ $group != build ]] || bash "$root/scripts/gst_webrtc.sh"
  [[ $group != windows ]] || setup_windows
done
