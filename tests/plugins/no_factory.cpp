// A library that is no plug-in.
#include "corvane_plugin.h"

CORVANE_PLUGIN_EXPORT int createSomethingElse() {
  return 0;
}
