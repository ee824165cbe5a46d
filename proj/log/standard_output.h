// The few traces that go to standard output beside the log.
#pragma once

#include <cstdio>
#include <string>

namespace corvane {

/// Writes the text and a line end at once, so that lines of several threads stay whole.
inline void printLine(std::string text) {
  text += '\n';
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

}  // namespace corvane
