# corvane::gstwebrtc: GStreamer's WebRTC library. Its headers come from the system, or from scripts/gst_webrtc.sh's cache:
# their package wants hundreds of megabytes of others that nothing here uses.

if(DEFINED ENV{XDG_CACHE_HOME} AND NOT "$ENV{XDG_CACHE_HOME}" STREQUAL "")
  set(webrtc_cache "$ENV{XDG_CACHE_HOME}/corvane-meeting-sdk/gst-webrtc")
else()
  set(webrtc_cache "$ENV{HOME}/.cache/corvane-meeting-sdk/gst-webrtc")
endif()
find_path(CORVANE_GST_WEBRTC_INCLUDE gst/webrtc/webrtc.h
  HINTS ${GSTREAMER_INCLUDE_DIRS} "${webrtc_cache}/usr/include/gstreamer-1.0" PATH_SUFFIXES gstreamer-1.0)
find_library(CORVANE_GST_WEBRTC_LIBRARY NAMES gstwebrtc-1.0 libgstwebrtc-1.0.so.0)
if(NOT CORVANE_GST_WEBRTC_INCLUDE OR NOT CORVANE_GST_WEBRTC_LIBRARY)
  message(FATAL_ERROR "GStreamer's WebRTC library or its headers are missing: run scripts/setup.sh build")
endif()

add_library(corvane_gstwebrtc INTERFACE)
add_library(corvane::gstwebrtc ALIAS corvane_gstwebrtc)
target_include_directories(corvane_gstwebrtc SYSTEM INTERFACE "${CORVANE_GST_WEBRTC_INCLUDE}")
# It may change between versions of GStreamer, which it says at every include unless told that this is known.
target_compile_definitions(corvane_gstwebrtc INTERFACE GST_USE_UNSTABLE_API)
target_link_libraries(corvane_gstwebrtc INTERFACE "${CORVANE_GST_WEBRTC_LIBRARY}")
