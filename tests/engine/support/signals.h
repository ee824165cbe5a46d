// Sounds whose every sample is known.
#pragma once

#include <cstdint>
#include <functional>

namespace corvane::test {

/// Sample number at 48 kHz -> -1 to 1.
using Signal = std::function<double(int64_t sample)>;

Signal silence();
Signal sine(double hertz, double amplitude);
/// The same sequence each time.
Signal noise(double amplitude);
/// Pulses of the vocal cords through two resonances of an open mouth, louder and softer three times a second.
Signal vowel(double hertz);
/// Vowels of changing pitch, `on` of each `period` seconds; silence between them.
Signal words(double amplitude, double on, double period);

Signal sum(Signal a, Signal b);
Signal scaled(Signal signal, double factor);
/// `signal`, later by so many samples.
Signal delayed(Signal signal, int64_t samples);

}  // namespace corvane::test
