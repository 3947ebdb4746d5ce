// The documents for users, and the examples in them.
import { readdirSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { root } from './setup.mjs';

// Paths of all of them, from the root of the checkout.
export const documents = ['.', 'docs'].flatMap((folder) =>
  readdirSync(join(root, folder)).filter((name) => name.endsWith('.md'))
    .map((name) => join(folder, name)));

// Windows may have checked it out with line ends of its own.
export const readDocument = (path) =>
  readFileSync(join(root, path), 'utf8').replaceAll('\r\n', '\n');

// The fenced blocks of one language.
export const examplesIn = (path, language) =>
  readDocument(path).split(/^```/m).filter((part) => part.startsWith(`${language}\n`))
    .map((part) => part.slice(language.length + 1));
