// A page to look around in a file: the values and the elements on the left, the
// bytes on the right. It needs nothing but itself, and may run nothing else.
import { createHash } from 'node:crypto';
import { readFileSync } from 'node:fs';
import { dump } from './html/dump.mjs';
import { escape } from './html/escape.mjs';
import { meanings } from './html/meanings.mjs';
import { anchor, sectionsOf } from './html/sections.mjs';
import { describeFault } from './inspect.mjs';
import { plural } from './text.mjs';

// Beyond this many bytes little is open but what has faults.
const SMALL = 16384;

export function page(file, bytes, found) {
  const sections = sectionsOf(bytes, found).map((section, i, all) => ({
    ...section,
    isOpen: bytes.length <= SMALL || i === 0 || section.faults.size !== 0,
    isTreeOpen: all.length === 1 && bytes.length <= SMALL || section.faults.size !== 0,
  }));
  const style = asset('style.css');
  const script = asset('script.js');
  return `<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="${policy(style, script)}">
<meta name="viewport" content="width=device-width">
<meta name="color-scheme" content="light dark">
<title>${escape(file)}</title>
<style>${style}</style>
<header>
<h1>${escape(file)}</h1> ${describe(bytes, found)}
${faultList(found, sections)}</header>
<main>
<div>${sections.map(meanings).join('\n')}</div>
<div>${sections.map((section) => dump(bytes, section)).join('\n')}</div>
</main>
<footer><output></output></footer>
<script>${script}</script>
`;
}

const asset = (name) => readFileSync(new URL(`html/${name}`, import.meta.url), 'utf8');

function policy(style, script) {
  const hash = (text) => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;
  return `default-src 'none'; style-src ${hash(style)}; script-src ${hash(script)}; ` +
    `base-uri 'none'; form-action 'none'`;
}

function describe(bytes, { kind, blocks }) {
  const what = kind === 'blob' ? `blob of ${plural(blocks.length, 'block')}` : 'block';
  return `<span>${what}, ${bytes.length} bytes</span>`;
}

function faultList({ faults, lines }, sections) {
  if (faults.length === 0) return '';
  const leaves = new Map(sections.flatMap((section) => [...section.faults])
    .flatMap(([leaf, own]) => own.map((fault) => [fault, leaf])));
  const items = faults.map((fault) => {
    const leaf = leaves.get(fault);
    const text = escape(describeFault(fault));
    return `<li>${leaf === undefined ? text : `<a href="#${anchor(leaf)}">${text}</a>`}`;
  });
  return `<ul>${items.join('')}</ul>\n<pre>${lines.map(escape).join('\n')}</pre>\n`;
}
