'use strict';

// Finds the native module: one built in this package, or else the one that came
// with it for this platform. Only the files of the package and the platform
// decide; no variable of the environment is read.
//
// Exports `native`, and `error` if there is none. It does not throw: only index
// does, as an ES module cannot pass on properly what a CommonJS one throws.

const { join } = require('node:path');
const platform = require('./platform.cjs');

// The paths are literals inside a `try`, so that bundlers take along the files
// that exist and pass over the others.
function open(folder) {
  try {
    switch (folder) {
      case 'build/Release': return { native: require('../build/Release/brindle.node') };
      case 'prebuilds/darwin-arm64':
        return { native: require('../prebuilds/darwin-arm64/brindle.node') };
      case 'prebuilds/darwin-x64':
        return { native: require('../prebuilds/darwin-x64/brindle.node') };
      case 'prebuilds/linux-arm64':
        return { native: require('../prebuilds/linux-arm64/brindle.node') };
      case 'prebuilds/linux-arm64-musl':
        return { native: require('../prebuilds/linux-arm64-musl/brindle.node') };
      case 'prebuilds/linux-x64':
        return { native: require('../prebuilds/linux-x64/brindle.node') };
      case 'prebuilds/linux-x64-musl':
        return { native: require('../prebuilds/linux-x64-musl/brindle.node') };
      case 'prebuilds/win32-arm64':
        return { native: require('../prebuilds/win32-arm64/brindle.node') };
      case 'prebuilds/win32-x64':
        return { native: require('../prebuilds/win32-x64/brindle.node') };
      default: return { error: new Error('not made for this platform') };
    }
  } catch (error) {
    return { error };
  }
}

function load() {
  const built = open('build/Release');
  if (built.native !== undefined) return built;
  const { description, names } = platform();
  const tried = [['build/Release', built.error]];
  for (const folder of names.map((name) => `prebuilds/${name}`)) {
    const prebuilt = open(folder);
    if (prebuilt.native !== undefined) return prebuilt;
    tried.push([folder, prebuilt.error]);
  }
  return { native: {}, error: explain(tried, description) };
}

// Only here is the folder asked for: ES modules that bundlers write have none.
function explain(tried, description) {
  const root = join(__dirname, '..');
  const attempts = tried.map(([folder, error]) =>
    `  ${join(root, folder, 'brindle.node')}: ${reasonOf(error)}\n`);
  const cause = tried.map(([, error]) => error).find((error) => !isMissing(error));
  return new Error(`brindle: no native module could be loaded (${description}). Tried\n` +
    `${attempts.join('')}With CMake and a C++20 compiler installed, this builds it from source:\n` +
    `  node "${join(root, 'scripts', 'build_from_source.mjs')}"`, cause && { cause });
}

const isMissing = ({ code }) => code === 'MODULE_NOT_FOUND';
const reasonOf = (error) =>
  isMissing(error) ? 'does not exist' : String(error.message).split('\n')[0];

module.exports = load();
