'use strict';

// Loads the native module from the build folder of this package. It never looks
// anywhere else and reads no environment variable, so what gets loaded depends
// on the installed files alone.

const { existsSync } = require('node:fs');
const { join } = require('node:path');

const root = join(__dirname, '..');
const binary = join(root, 'build', 'Release', 'brindle.node');
const target = `${process.platform}-${process.arch}`;
const remedy = `Run "npm run build" in ${root}`;

function load() {
  if (!existsSync(binary)) {
    throw new Error(`brindle: no native module for ${target}: ${binary} is missing. ${remedy}`);
  }
  try {
    return require(binary);
  } catch (cause) {
    // Mostly a binary built for another platform, or cut short by a failed build.
    throw new Error(`brindle: ${binary} cannot be loaded on ${target}. ${remedy}`, { cause });
  }
}

module.exports = load();
