'use strict';
// Finds and loads the native module, and puts into words what stands in the way when it does not load.

const fs = require('node:fs');
const path = require('node:path');

const kModule = 'corvane_meeting_sdk.node';
const kPackageRoot = path.dirname(__dirname);

/** By platform: the engine library beside the module, and the folders that builds leave the two in. */
const kPlatforms = {
  'linux-x64': { engine: 'libCorvaneRTC.so', folders: ['build/release', 'prebuilds/linux-x64'] },
  'win32-x64': { engine: 'CorvaneRTC.dll', folders: ['build/release', 'build/win-x64', 'prebuilds/win32-x64'] },
};

/** Debian packages of the libraries that module and engine are linked with, by the start of the library's name. */
const kDebianPackages = [
  [/^libgst(app|audio|video|pbutils|tag|rtp|rtsp|sdp|allocators|fft|riff|gl)-1\.0\./, 'libgstreamer-plugins-base1.0-0'],
  [/^libgst(webrtc|play|player|codecs|codecparsers|mpegts|sctp)-1\.0\./, 'libgstreamer-plugins-bad1.0-0'],
  [/^libgst[a-z]*-1\.0\./, 'libgstreamer1.0-0'],
  [/^lib(glib|gobject|gio|gmodule)-2\.0\./, 'libglib2.0-0'],
  [/^libyuv\./, 'libyuv0'],
  [/^libjpeg\./, 'libjpeg62-turbo'],
  [/^libpng16\./, 'libpng16-16'],
  [/^libstdc\+\+\./, 'libstdc++6'],
  [/^libgcc_s\./, 'libgcc-s1'],
];

/** Thrown when the module does not load; the typings describe its fields. */
class CorvaneLoadError extends Error {
  constructor({ code, platform, library, reason, pathsTried, fix, cause }) {
    const tried = pathsTried.length === 0 ? [] : ['Paths tried:', ...pathsTried.map((one) => `  ${one}`)];
    const lines = [`Cannot load corvane-meeting-sdk on ${platform}: ${library} ${reason}.`, ...tried, `Fix: ${fix}`];
    super(lines.join('\n'), cause === undefined ? undefined : { cause });
    this.name = 'CorvaneLoadError';
    this.code = code;
    this.platform = platform;
    this.library = library;
    this.pathsTried = pathsTried;
  }
}

/** The folder that the environment names is an order: the module is looked for nowhere else. */
function searchFolders(folders) {
  const ordered = process.env.CORVANE_MEETING_SDK_DIR;
  return ordered ? [path.resolve(ordered)] : folders.map((folder) => path.join(kPackageRoot, folder));
}

/** A clone of the repository can build what is missing; an installed package cannot. */
function buildHint(platform) {
  const buildable = platform === 'linux-x64' && fs.existsSync(path.join(kPackageRoot, 'CMakeLists.txt'));
  return buildable ? `run \`npm run build\` in ${kPackageRoot}` : undefined;
}

/** What to do about a module that is in none of the folders. */
function moduleFix(engine, platform) {
  const both = `${kModule} and ${engine}`;
  const ordered = process.env.CORVANE_MEETING_SDK_DIR;
  if (ordered) {
    const folder = path.resolve(ordered);
    const trouble = fs.existsSync(folder) ? `holds no ${kModule}` : 'does not exist';
    const names = `CORVANE_MEETING_SDK_DIR names ${folder}, which ${trouble}`;
    return `${names}: set it to the folder that holds ${both}, or unset it.`;
  }
  const place = `put ${both} into ${path.join(kPackageRoot, 'prebuilds', platform)}`;
  return `${buildHint(platform) ?? place}, or set CORVANE_MEETING_SDK_DIR to a folder that holds ${both}.`;
}

/** @returns the Debian package that holds a shared library; undefined for one that is not known */
function debianPackage(library) {
  return kDebianPackages.find(([pattern]) => pattern.test(library))?.[1];
}

function dependencyFix(library) {
  const debian = debianPackage(library);
  return debian === undefined
    ? `install the system package that holds ${library}.`
    : `install the Debian package ${debian}: \`apt-get install ${debian}\`.`;
}

/**
 * What the system's loader stumbled over, told by its message. On Linux that names the library; on Windows it names
 * the module only, in the system's language, so an engine that is missing is told by looking.
 */
function diagnose(message, folder, engine, platform) {
  const hint = buildHint(platform);
  const alternative = hint === undefined ? '' : `, or ${hint}, which makes module and engine`;
  const replace = (library) => `put the ${library} that belongs to this version into ${folder}${alternative}.`;

  const missing = /([^\s/:]+): cannot open shared object file/.exec(message)?.[1];
  if (missing === engine || (missing === undefined && !fs.existsSync(path.join(folder, engine)))) {
    return {
      code: 'ERR_CORVANE_ENGINE_NOT_FOUND',
      library: engine,
      reason: 'is not beside the module',
      fix: `put ${engine} beside the module, into ${folder}${alternative}.`,
    };
  }
  if (missing !== undefined) {
    const reason = `is not installed, and ${kModule} or ${engine} needs it`;
    return { code: 'ERR_CORVANE_DEPENDENCY_NOT_FOUND', library: missing, reason, fix: dependencyFix(missing) };
  }
  if (/specified (module|procedure) could not be found|module not found/i.test(message)) {
    return {
      code: 'ERR_CORVANE_DEPENDENCY_NOT_FOUND',
      library: kModule,
      reason: `or ${engine} needs a library that was not found`,
      fix: `put the DLLs that ${kModule} and ${engine} were shipped with into ${folder}.`,
    };
  }
  const unusable = 'ERR_CORVANE_LIBRARY_UNUSABLE';
  if (message.includes(`${kModule}: undefined symbol`)) {
    const reason = 'is not the one that the module was built for';
    return { code: unusable, library: engine, reason, fix: replace(engine) };
  }
  const library = message.includes(`${engine}:`) ? engine : kModule;
  const reason = `is damaged, or was built for something other than ${platform} and Node.js ${process.version}`;
  return { code: unusable, library, reason, fix: replace(library) };
}

/** @returns the native module's exports object itself */
function load() {
  const platform = `${process.platform}-${process.arch}`;
  const support = kPlatforms[platform];
  if (support === undefined) {
    throw new CorvaneLoadError({
      code: 'ERR_CORVANE_PLATFORM',
      platform,
      library: kModule,
      reason: 'is not built for it',
      pathsTried: [],
      fix: `use one of the platforms there is a build for: ${Object.keys(kPlatforms).join(', ')}.`,
    });
  }

  const candidates = searchFolders(support.folders).map((folder) => path.join(folder, kModule));
  const found = candidates.findIndex((candidate) => fs.existsSync(candidate));
  if (found === -1) {
    throw new CorvaneLoadError({
      code: 'ERR_CORVANE_MODULE_NOT_FOUND',
      platform,
      library: kModule,
      reason: 'was not found',
      pathsTried: candidates,
      fix: moduleFix(support.engine, platform),
    });
  }

  // The module reads it when it makes the first RGBA frame; unless it is 1, that memory is never given back.
  process.env.CORVANE_RELEASE_RGBA_FRAMES ??= '1';

  const modulePath = candidates[found];
  try {
    return require(modulePath);
  } catch (cause) {
    const folder = path.dirname(modulePath);
    const pathsTried = [...candidates.slice(0, found + 1), path.join(folder, support.engine)];
    const diagnosis = diagnose(String(cause?.message ?? cause), folder, support.engine, platform);
    throw new CorvaneLoadError({ platform, pathsTried, cause, ...diagnosis });
  }
}

module.exports = { debianPackage, load };
