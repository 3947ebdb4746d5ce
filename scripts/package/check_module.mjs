// What a built module may ask of a Linux system and show to it. Works on the
// file alone, so that modules for other processors can be checked too.
import { createRequire } from 'node:module';
import { fail, runQuietly } from '../setup.mjs';

const exported = ['napi_register_module_v1', 'node_api_module_get_api_version_v1'];
// Debian 10, RHEL 8 and whatever came after them.
const newest = { GLIBC: '2.28', GLIBCXX: '3.4.25' };

// Loaded when it is needed: this file is also part of the task that installs it.
function nodeApi() {
  const { v8 } = createRequire(import.meta.url)('node-api-headers').symbols;
  return new Set([...v8.js_native_api_symbols, ...v8.node_api_symbols]);
}

const readelf = (option, file) => runQuietly('readelf', ['-W', option, file]);
const inOrder = (a, b) => a.localeCompare(b, 'en', { numeric: true });

// Returns one line about each property; ends the process if there are faults.
export function checkModule(file, isForGlibc) {
  const symbols = [...readelf('--dyn-syms', file)
    .matchAll(/^ *\d+: \w+ +\d+ \w+ +\w+ +\w+ +(\w+) ([^\s@]+)(?:@+(\w+?)_([\d.]+))?/gm)]
    .map(([, section, name, library, version]) =>
      ({ isImport: section === 'UND', name, library, version }));
  const results = [
    ...checkExports(symbols), ...checkImports(symbols), ...checkLayout(file),
    ...(isForGlibc ? checkVersions(symbols) : []),
  ];
  const faults = results.filter(([isGood]) => !isGood).map(([, text]) => text);
  if (faults.length !== 0) fail(`${file}: this does not hold: ${faults.join('; ')}`);
  return results.map(([, text]) => text);
}

function checkExports(symbols) {
  const names = symbols.filter(({ isImport }) => !isImport).map(({ name }) => name).sort();
  return [[names.join() === exported.join(), `exports ${names.join(', ')}`]];
}

function checkImports(symbols) {
  const names = symbols.filter(({ isImport, name }) => isImport && /^(napi|node_api)_/.test(name))
    .map(({ name }) => name);
  const known = nodeApi();
  const later = names.filter((name) => !known.has(name));
  return [[names.length !== 0 && later.length === 0, later.length === 0
    ? `imports ${names.length} functions of Node-API 8` : `imports ${later.join(', ')}`]];
}

function checkVersions(symbols) {
  return Object.entries(newest).map(([library, limit]) => {
    const versions = symbols.filter((symbol) => symbol.library === library)
      .map(({ version }) => version).sort(inOrder);
    const needed = versions.at(-1);
    return [needed === undefined || inOrder(needed, limit) <= 0,
      `needs ${library} ${needed ?? 'of any version'} (at most ${limit})`];
  });
}

function checkLayout(file) {
  const [segments, dynamic, sections] = ['-l', '-d', '-S'].map((option) => readelf(option, file));
  return [
    [/GNU_RELRO/.test(segments) && /BIND_NOW|Flags: NOW/.test(dynamic), 'full RELRO'],
    [/GNU_STACK.* RW /.test(segments), 'no executable stack'],
    [!/\.symtab/.test(sections), 'stripped'],
  ];
}
