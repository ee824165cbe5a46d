// A plug-in's shared library and the instance that it made.
#pragma once

#include "corvane_plugin.h"

namespace corvane {

/// Neither is owned: what init() refused stays in memory, so the end is said with unload().
struct PluginLibrary {
  void* library = nullptr;
  plugin::IPlugin* instance = nullptr;

  /// Loads the library, makes its instance and initialises it. Without an instance the log says why.
  static PluginLibrary load(const char* path);
  void unload();
};

}  // namespace corvane
