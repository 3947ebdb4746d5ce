// Installs the tarball as users do, and uses it in every host that there is.
import { spawnSync } from 'node:child_process';
import {
  cpSync, existsSync, mkdirSync, mkdtempSync, realpathSync, rmSync, symlinkSync,
  writeFileSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fail, root, runQuietly } from '../setup.mjs';
import { compileTypes } from '../types.mjs';

const tool = (path) => join(root, 'scripts/package/node_modules', path);

// How each host runs a script. Those that npm has not for this machine are
// reported as left out.
const hosts = {
  'Node.js 18': [tool('node18/bin/node')],
  [`Node.js ${process.versions.node}`]: [process.execPath],
  'Node.js 22': [tool('node22/bin/node')],
  'Node.js 24': [tool('node24/bin/node')],
  Bun: [tool('@oven/bun-linux-x64/bin/bun')],
  Deno: [tool('@deno/linux-x64-glibc/deno'), 'run', '-A', '--node-modules-dir=manual'],
};

export function smoke(tarball) {
  const folder = realpathSync(mkdtempSync(join(tmpdir(), 'brindle-package-')));
  // Not `finally`, which is passed over when a check ends the process.
  process.on('exit', () => rmSync(folder, { recursive: true, force: true }));
  for (const scripts of ['off', 'on']) {
    const project = install(tarball, join(folder, `scripts-${scripts}`), scripts);
    useCommand(project);
    console.log(`installed without a compiler, scripts ${scripts}, and used in ${useIn(project)}`);
    useBundled(project);
  }
  const project = install(tarball, join(folder, 'types'), 'off');
  compileTypes(project.folder);
  rebuild(project);
}

// A project whose only dependency is the tarball.
function install(tarball, folder, scripts) {
  cpSync(join(root, 'tests/package'), folder, { recursive: true });
  writeFileSync(join(folder, 'package.json'), '{"private": true}');
  const project = { folder, env: withoutCompiler(folder) };
  quietly(project, 'npm', 'install', '--offline', '--no-audit', '--no-fund',
    `--ignore-scripts=${scripts === 'off'}`, join(root, tarball));
  if (existsSync(join(folder, 'node_modules/brindle/build'))) fail('installing built something');
  return project;
}

const quietly = ({ folder, env }, command, ...args) =>
  runQuietly(command, args, { cwd: folder, env });

// The names of the hosts in which it works; one in which it does not ends all.
function useIn(project) {
  const isPresent = ([, [program]]) => existsSync(program);
  const present = Object.entries(hosts).filter(isPresent);
  const absent = Object.entries(hosts).filter((host) => !isPresent(host)).map(([name]) => name);
  if (absent.length !== 0) console.log(`not tried, as npm has none for here: ${absent.join(', ')}`);
  for (const [name, command] of present) {
    for (const [script, expected] of [['required.cjs', 'required'], ['imported.mjs', 'imported']]) {
      const output = quietly(project, ...command, script);
      if (output.trim() !== expected) fail(`${name}, ${script}: ${output}`);
    }
  }
  return present.map(([name]) => name).join(', ');
}

// The command that npm puts on the path, of a script of npm.
function useCommand({ folder, env }) {
  const command = join(folder, 'node_modules/.bin/brindle');
  writeFileSync(join(folder, 'spec.json'), '{"metaName": "made-by-the-command"}');
  quietly({ folder, env }, command, 'build', 'spec.json', '-o', 'block.bin');
  const output = quietly({ folder, env }, command, 'check', 'block.bin');
  if (!output.startsWith('block.bin: ok')) fail(`brindle check: ${output}`);
}

// Away from the installed package, so that nothing but the bundle is found.
function useBundled({ folder, env }) {
  const elsewhere = join(folder, '..', 'bundle');
  for (const format of ['cjs', 'esm']) {
    const outfile = join(elsewhere, `bundled.${format === 'cjs' ? 'cjs' : 'mjs'}`);
    // In an ES module the bundler leaves `require` to the one who bundles.
    const banner = format === 'esm' ? "import { createRequire } from 'node:module';" +
      'const require = createRequire(import.meta.url);' : '';
    quietly({ folder, env }, tool('esbuild/bin/esbuild'), 'bundled.mjs', '--bundle',
      '--platform=node', '--loader:.node=copy', `--format=${format}`, `--banner:js=${banner}`,
      '--log-level=error', `--outfile=${outfile}`);
    quietly({ folder: elsewhere, env }, process.execPath, outfile);
  }
  rmSync(elsewhere, { recursive: true });
  console.log('bundled by esbuild as CommonJS and as an ES module');
}

// Takes the module away; what the error says then brings one back, even where
// a build was prepared before the package moved.
function rebuild({ folder, env }) {
  const installed = join(folder, 'node_modules/brindle');
  rmSync(join(installed, 'prebuilds'), { recursive: true });
  mkdirSync(join(installed, 'build/Release'), { recursive: true });
  writeFileSync(join(installed, 'build/Release/CMakeCache.txt'),
    `CMAKE_HOME_DIRECTORY:INTERNAL=${folder}\n`);
  const { stderr } = spawnSync(process.execPath, ['required.cjs'],
    { cwd: folder, env, encoding: 'utf8' });
  const [, command] = /^ {2}node "(.+)"$/m.exec(stderr) ?? fail(`unhelpful: ${stderr}`);
  runQuietly(process.execPath, [command], { cwd: folder });
  quietly({ folder, env }, process.execPath, 'required.cjs');
  console.log('built from the sources in the tarball by the command of the error');
}

// Only what npm needs.
function withoutCompiler(folder) {
  const bin = join(folder, 'bin');
  mkdirSync(bin, { recursive: true });
  const npm = runQuietly('sh', ['-c', 'command -v npm']).trim();
  for (const [name, path] of [['node', process.execPath], ['npm', npm], ['sh', '/bin/sh']]) {
    symlinkSync(realpathSync(path), join(bin, name));
  }
  return { ...process.env, PATH: bin };
}
