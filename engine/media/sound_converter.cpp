#include "media/sound_converter.h"

namespace corvane::rtc {

namespace {

GstAudioInfo infoOf(const SoundFormat& format) {
  GstAudioInfo info;
  gst_audio_info_init(&info);
  gst_audio_info_set_format(&info, GST_AUDIO_FORMAT_S16, format.sample_rate, format.channels, nullptr);
  return info;
}

}  // namespace

SoundConverter::SoundConverter(const SoundFormat& from, const SoundFormat& to) : from_(from), to_(to) {
  if (from == to) return;
  GstAudioInfo in = infoOf(from);
  GstAudioInfo out = infoOf(to);
  converter_.reset(gst_audio_converter_new(GST_AUDIO_CONVERTER_FLAG_NONE, &in, &out, nullptr));
}

void SoundConverter::convert(std::span<const int16_t> samples, std::vector<int16_t>& converted) {
  if (converter_ == nullptr) {
    converted.insert(converted.end(), samples.begin(), samples.end());
    return;
  }
  const gsize in_frames = samples.size() / static_cast<size_t>(from_.channels);
  const gsize out_frames = gst_audio_converter_get_out_frames(converter_.get(), in_frames);
  const size_t before = converted.size();
  converted.resize(before + out_frames * static_cast<size_t>(to_.channels));
  // The interface asks for writable memory on both sides and, without being told that it may, writes one only.
  gpointer in[] = {const_cast<int16_t*>(samples.data())};
  gpointer out[] = {converted.data() + before};
  gst_audio_converter_samples(converter_.get(), GST_AUDIO_CONVERTER_FLAG_NONE, in, in_frames, out, out_frames);
}

}  // namespace corvane::rtc
