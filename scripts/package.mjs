// Makes the tarball for npm and tries it: npm run package [-- --collected].
import {
  copyFileSync, existsSync, mkdirSync, readFileSync, readdirSync, rmSync,
} from 'node:fs';
import { join, relative } from 'node:path';
import platform from '../lib/platform.cjs';
import { checkModule } from './package/check_module.mjs';
import { checkTarball } from './package/check_tarball.mjs';
import { smoke } from './package/smoke.mjs';
import {
  build, fail, needDebianPackages, needNpmPackages, root, runQuietly,
} from './setup.mjs';

const prebuilds = join(root, 'prebuilds');

// With "--collected" the modules lie in prebuilds/ already, made on machines of
// all platforms; otherwise the one for this platform is built.
export function makePackage(option) {
  if (option !== undefined && option !== '--collected') fail('package takes only --collected');
  needDebianPackages('cmake', 'g++');
  needNpmPackages();
  needNpmPackages('scripts/package');
  if (option !== '--collected') placeModule();
  checkModules(option === '--collected' ? allTargets() : platform().names);
  const tarball = pack();
  checkTarball(tarball);
  smoke(tarball);
  console.log(`package: ${tarball}`);
}

function placeModule() {
  needDebianPackages('ninja-build');
  const folder = build('release', 'Release');
  const place = join(prebuilds, platform().names[0]);
  rmSync(prebuilds, { recursive: true, force: true });
  mkdirSync(place, { recursive: true });
  copyFileSync(join(folder, 'brindle.node'), join(place, 'brindle.node'));
}

function checkModules(needed) {
  const targets = existsSync(prebuilds) ? readdirSync(prebuilds) : [];
  const missing = needed.filter((target) => !targets.includes(target));
  if (missing.length !== 0) fail(`prebuilds/ lacks ${missing.join(', ')}`);
  for (const target of targets) {
    const lines = target.startsWith('linux-') ?
      checkModule(join(prebuilds, target, 'brindle.node'), !target.endsWith('-musl')) :
      ['not checked, as it is no ELF file'];
    for (const line of lines) console.log(`${target}: ${line}`);
  }
}

// The platforms whose modules the loader looks for.
function allTargets() {
  const loader = readFileSync(join(root, 'lib/load.cjs'), 'utf8');
  return [...loader.matchAll(/require\('\.\.\/prebuilds\/([\w-]+)\//g)].map(([, name]) => name);
}

function pack() {
  const output = runQuietly('npm', ['pack', '--json', '--ignore-scripts',
    '--pack-destination', join(root, 'build')]);
  const [{ filename }] = JSON.parse(output);
  return relative(root, join(root, 'build', filename));
}
