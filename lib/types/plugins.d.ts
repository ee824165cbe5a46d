// Plug-ins: one shared library at a time that processes local video and raw audio.

import type { AudioFormat, AudioFrameMethod, Result } from './common';

export interface PluginLibrary {
  /** Of the shared library. Its folder is told to the plug-in. */
  path: string;
}

export interface PluginMethods {
  /** Loads a plug-in. -1 when one is loaded already or the library does not load. */
  registerPlugin(plugin: PluginLibrary): Result;
  /** Unloads it. -1 when there is none. */
  unregisterPlugin(): Result;
  /** -1 when there is no plug-in. */
  enableVideoPlugin(enable: boolean): Result;
  /** @param method which sound the plug-in gets; not 2 */
  enableAudioPlugin(enable: boolean, method: AudioFrameMethod, format: AudioFormat): Result;
  /** Hands a text of the plug-in's own to it. -1 when it refuses or there is no plug-in. */
  setPluginParameter(parameter: string): Result;
}
