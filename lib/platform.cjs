'use strict';

// The name of this platform, which is that of its folder in prebuilds/.

const { readFileSync } = require('node:fs');

const host = `${process.platform}-${process.arch}`;

// 'glibc' or 'musl', whose dynamic loader is part of every process that uses
// it; undefined where it cannot be told. Linux only.
function cLibrary() {
  try {
    return readFileSync('/proc/self/maps', 'latin1').includes('/ld-musl-') ? 'musl' : 'glibc';
  } catch {
    return undefined;
  }
}

// For people, and as the names to try.
function platform() {
  if (process.platform !== 'linux') return { description: host, names: [host] };
  const library = cLibrary();
  const names = { glibc: [host], musl: [`${host}-musl`] }[library] ?? [host, `${host}-musl`];
  return { description: `${host}, ${library ?? 'unknown C library'}`, names };
}

module.exports = platform;
