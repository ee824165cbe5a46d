// Plug-ins: one shared library at a time that processes local video and raw audio. `include/corvane_plugin.h` tells how
// one is written; `examples/plugins/` has two.

import type { AudioFormat, AudioFrameMethod, Result } from './common';

export interface PluginLibrary {
  /** Of the shared library. Its folder is told to the plug-in. */
  path: string;
}

export interface PluginMethods {
  /**
   * Loads a plug-in and puts it into the engine's hooks. Its code is trusted as the application's own: check where a
   * path comes from. A path without a folder is a name that the system looks for in its own folders.
   *
   * -1 when one is loaded already, the library or its plug-in cannot be used, or the engine has no hooks.
   */
  registerPlugin(plugin: string | PluginLibrary): Result;
  /** Waits for what the plug-in is at and unloads it; so does destroyRTCVideo(). -1 when there is none. */
  unregisterPlugin(): Result;
  /**
   * Sends the local picture through the plug-in, or not, as after registerPlugin(). The first picture is not sent;
   * after it, those for which the plug-in takes more than 40 ms are not either. -1 when there is no plug-in.
   */
  enableVideoPlugin(enable: boolean): Result;
  /**
   * Has the engine give sound to the plug-in, or no more; needs no plug-in yet.
   *
   * @param method which sound; not 2
   */
  enableAudioPlugin(enable: boolean, method: AudioFrameMethod, format: AudioFormat): Result;
  /** Hands a text of the plug-in's own to it. -1 when it refuses or there is no plug-in. */
  setPluginParameter(parameter: string): Result;
}
