#include "recording/media_file.h"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "capture/capture_fault.h"
#include "core/bus_watch.h"
#include "media/sound_block.h"
#include "recording/file_repair.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::seconds kPatience(10);
// Pictures that wait for the encoder; a further one pushes out the oldest.
constexpr guint64 kWaitingPictures = 8;
// Of a tenth of a second each, as they are fed.
constexpr guint64 kWaitingSounds = 100;
// Encoded media wait for each other and for the disk.
constexpr guint64 kWaitingEncoded = 10 * GST_SECOND;
// Shorter than the time between key frames, so that each begins a fragment.
constexpr guint kFragmentMs = 500;
constexpr int kQuantizer = 23;
// The bitrate that is not exceeded, for what moves as no camera's picture does.
constexpr double kMaxBitsPerPixel = 0.2;
constexpr double kUsualFps = 30;
constexpr int kMinKbit = 500;

struct Encoder {
  const char* element;
  void (*set_up)(GstElement* encoder, int kbit);
};

const Encoder kPictureEncoders[] = {
    {"x264enc",
     [](GstElement* encoder, int kbit) {
       gst_util_set_object_arg(G_OBJECT(encoder), "speed-preset", "superfast");
       gst_util_set_object_arg(G_OBJECT(encoder), "pass", "qual");
       g_object_set(encoder, "quantizer", kQuantizer, "bitrate", kbit, "bframes", 0, "rc-lookahead", 5, nullptr);
     }},
    {"openh264enc",
     [](GstElement* encoder, int kbit) {
       gst_util_set_object_arg(G_OBJECT(encoder), "complexity", "low");
       g_object_set(encoder, "bitrate", static_cast<guint>(kbit) * 1000, nullptr);
     }},
};

const Encoder kSoundEncoders[] = {
    // Left alone it codes middle and side only: of what one channel has, the other gets half.
    {"avenc_aac",
     [](GstElement* encoder, int bit) { g_object_set(encoder, "bitrate", bit, "aac-ms", FALSE, nullptr); }},
    {"voaacenc", [](GstElement* encoder, int bit) { g_object_set(encoder, "bitrate", bit, nullptr); }},
};

template <size_t kCount>
GstElement* addEncoder(Pipeline& pipeline, const Encoder (&kinds)[kCount], const char* name, int bitrate) {
  const auto* kind = std::find_if(std::begin(kinds), std::end(kinds), [](const Encoder& candidate) {
    GstElementFactory* factory = gst_element_factory_find(candidate.element);
    if (factory != nullptr) gst_object_unref(factory);
    return factory != nullptr;
  });
  if (kind == std::end(kinds)) kind = std::begin(kinds);  // the one that is told to be missing
  GstElement* encoder = pipeline.add(kind->element, name);
  if (encoder != nullptr) kind->set_up(encoder, bitrate);
  return encoder;
}

void setCaps(GstElement* filter, GstPtr<GstCaps> caps) {
  if (filter != nullptr) g_object_set(filter, "caps", caps.get(), nullptr);
}

GstAppSrc* addSource(Pipeline& pipeline, const char* name, guint64 waiting) {
  GstElement* source = pipeline.add("appsrc", name);
  if (source == nullptr) return nullptr;
  g_object_set(source, "format", GST_FORMAT_TIME, "max-buffers", waiting, "max-bytes", guint64{0}, nullptr);
  gst_util_set_object_arg(G_OBJECT(source), "leaky-type", "downstream");
  return GST_APP_SRC(source);
}

GstElement* addQueue(Pipeline& pipeline, const char* name) {
  GstElement* queue = pipeline.add("queue", name);
  if (queue != nullptr) {
    g_object_set(queue, "max-size-time", kWaitingEncoded, "max-size-buffers", 0U, "max-size-bytes", 0U, nullptr);
  }
  return queue;
}

}  // namespace

MediaFile::MediaFile(EngineContext& context, const MediaFileSettings& settings, Listener& listener)
    : context_(context), listener_(listener), settings_(settings), pipeline_("recording") {}

MediaFile::~MediaFile() {
  close();
}

void MediaFile::close() {
  watch_.reset();
  patience_.reset();
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
}

bool MediaFile::open(RecordingFault& fault) {
  GstElement* sink = pipeline_.add("filesink", "file");
  GstElement* next = sink;
  if (settings_.format == FileFormat::kMp4) {
    next = pipeline_.add("mp4mux", "muxer");
    if (next != nullptr) g_object_set(next, "fragment-duration", kFragmentMs, nullptr);
  }
  if (sink != nullptr && next != nullptr) {
    g_object_set(sink, "location", settings_.path.c_str(), "sync", FALSE, "async", FALSE, nullptr);
    // What is in a buffer of the process goes with the process.
    gst_util_set_object_arg(G_OBJECT(sink), "buffer-mode", "unbuffered");
    if (next != sink) gst_element_link(next, sink);
    if (settings_.with_picture) addPictures(next);
    if (settings_.with_sound) addSound(next);
  }
  if (!pipeline_.missing().empty()) {
    fault = {kRecordingErrorNotSupported, "GStreamer's element " + pipeline_.missing() + " is not installed"};
    return false;
  }
  watch_ = watchBus<&MediaFile::onMessage>(pipeline_.bus().get(), context_.thread, this);
  if (pipeline_.play()) return true;
  fault = {kRecordingErrorOther, settings_.path + ": writing does not start"};
  return false;
}

void MediaFile::addPictures(GstElement* next) {
  const double pixels = static_cast<double>(settings_.width) * settings_.height;
  const int kbit = std::max(kMinKbit, static_cast<int>(pixels * kUsualFps * kMaxBitsPerPixel / 1000));
  pictures_ = addSource(pipeline_, "pictures", kWaitingPictures);
  GstElement* scale = pipeline_.add("videoconvertscale", "scale");
  GstElement* raw = pipeline_.add("capsfilter", "raw-pictures");
  encoder_ = addEncoder(pipeline_, kPictureEncoders, "picture-encoder", kbit);
  GstElement* parser = pipeline_.add("h264parse", "picture-parser");
  GstElement* queue = addQueue(pipeline_, "encoded-pictures");
  if (!pipeline_.missing().empty()) return;
  setCaps(raw, GstPtr<GstCaps>(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "I420", "width", G_TYPE_INT,
                                                   settings_.width, "height", G_TYPE_INT, settings_.height,
                                                   "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, nullptr)));
  gst_element_link_many(GST_ELEMENT(pictures_), scale, raw, encoder_, parser, queue, next, nullptr);
}

void MediaFile::addSound(GstElement* next) {
  sound_ = addSource(pipeline_, "sound", kWaitingSounds);
  GstElement* convert = pipeline_.add("audioconvert", "sound-convert");
  GstElement* resample = pipeline_.add("audioresample", "sound-resample");
  GstElement* raw = pipeline_.add("capsfilter", "raw-sound");
  GstElement* last = nullptr;
  if (settings_.format == FileFormat::kWav) {
    last = pipeline_.add("wavenc", "sound-encoder");
  } else {
    // The encoder's own form of samples, which is not that of others.
    GstElement* form = pipeline_.add("audioconvert", "sound-form");
    GstElement* encoder = addEncoder(pipeline_, kSoundEncoders, "sound-encoder", settings_.sound_bitrate);
    GstElement* parser = pipeline_.add("aacparse", "sound-parser");
    GstElement* encoded = pipeline_.add("capsfilter", "encoded-form");
    last = addQueue(pipeline_, "encoded-sound");
    if (!pipeline_.missing().empty()) return;
    const char* stream_format = settings_.format == FileFormat::kAac ? "adts" : "raw";
    setCaps(encoded, GstPtr<GstCaps>(gst_caps_new_simple("audio/mpeg", "mpegversion", G_TYPE_INT, 4, "stream-format",
                                                         G_TYPE_STRING, stream_format, nullptr)));
    gst_element_link_many(raw, form, encoder, parser, encoded, last, nullptr);
  }
  if (!pipeline_.missing().empty()) return;
  const GstPtr<GstCaps> fed(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", "layout",
                                                G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, kSoundRate,
                                                "channels", G_TYPE_INT, kMaxSoundChannels, nullptr));
  gst_app_src_set_caps(sound_, fed.get());
  GstPtr<GstCaps> wanted(gst_caps_new_simple("audio/x-raw", "rate", G_TYPE_INT, settings_.sample_rate, "channels",
                                             G_TYPE_INT, settings_.channels, nullptr));
  if (settings_.format == FileFormat::kWav) {
    gst_caps_set_simple(wanted.get(), "format", G_TYPE_STRING, "S16LE", nullptr);
    gst_element_link(raw, last);
  }
  setCaps(raw, std::move(wanted));
  gst_element_link_many(GST_ELEMENT(sound_), convert, resample, raw, nullptr);
  gst_element_link(last, next);
}

void MediaFile::updateHead() {
  if (settings_.format == FileFormat::kWav) updateWavHead(settings_.path);
}

void MediaFile::finish() {
  if (pictures_ != nullptr) gst_app_src_end_of_stream(pictures_);
  if (sound_ != nullptr) gst_app_src_end_of_stream(sound_);
  patience_ = context_.thread.after(kPatience, [this] {
    close();
    listener_.onFileFailed({kRecordingErrorOther, settings_.path + ": what is left cannot be written"});
  });
}

bool MediaFile::finishNow() {
  finish();
  watch_.reset();
  patience_.reset();
  const GstPtr<GstMessage> message(gst_bus_timed_pop_filtered(
      pipeline_.bus().get(), static_cast<GstClockTime>(std::chrono::nanoseconds(kPatience).count()),
      static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
  const bool finished = message != nullptr && GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS;
  close();
  return finished;
}

void MediaFile::onMessage(GstMessage* message) {
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS) {
    close();
    listener_.onFileFinished();
  } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
    const CaptureFault read = readFault(message);
    close();
    updateHead();
    if (settings_.format == FileFormat::kMp4) dropPartialBox(settings_.path);
    const bool refused = read.device_error == kMediaDeviceErrorNoPermission;
    listener_.onFileFailed({refused ? kRecordingErrorNoPermission : kRecordingErrorOther, read.text});
  }
}

}  // namespace corvane::rtc
