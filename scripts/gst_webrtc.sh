#!/usr/bin/env bash
# Puts the headers of GStreamer's WebRTC library into the cache, once, from Debian's package of them: installing that
# package would bring hundreds of megabytes that nothing here uses.
set -euo pipefail
source "$(dirname "$0")/common.sh"

target=$cache/gst-webrtc
[[ -f $target/usr/include/gstreamer-1.0/gst/webrtc/webrtc.h ]] && exit 0
[[ -f /usr/include/gstreamer-1.0/gst/webrtc/webrtc.h ]] && exit 0
say "setup: taking the headers of GStreamer's WebRTC library from Debian's package"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && apt-get download -qq libgstreamer-plugins-bad1.0-dev >log 2>&1) || {
  tail -n 5 "$work/log" >&2
  die "apt-get could not download libgstreamer-plugins-bad1.0-dev"
}
dpkg -x "$work"/libgstreamer-plugins-bad1.0-dev_*.deb "$work/package"
mkdir -p "$target/usr/include/gstreamer-1.0/gst"
# Last, and by renaming: the folder's presence is what says that all of it is there.
rm -rf "$target/usr/include/gstreamer-1.0/gst/webrtc"
mv "$work/package/usr/include/gstreamer-1.0/gst/webrtc" "$target/usr/include/gstreamer-1.0/gst/webrtc"
