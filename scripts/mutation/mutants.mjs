// All small faults that the operators below can plant in a source file.
import { tokenize } from './tokens.mjs';

// Between spaces, as clang-format leaves it: no pointer, no template bracket.
const binary = {
  '<': ['<=', '>='], '>': ['>=', '<='], '<=': ['<', '>'], '>=': ['>', '<'],
  '==': ['!='], '!=': ['=='], '&&': ['||'], '||': ['&&'],
  '+': ['-'], '-': ['+'], '*': ['/'], '/': ['*'], '%': ['*'],
  '&': ['|'], '|': ['&'], '^': ['&'], '<<': ['>>'], '>>': ['<<'],
  '+=': ['-='], '-=': ['+='], '*=': ['/='], '/=': ['*='], '%=': ['*='],
  '&=': ['|='], '|=': ['&='], '^=': ['='], '<<=': ['>>='], '>>=': ['<<='],
};
const words = { true: ['false'], false: ['true'], min: ['max'], max: ['min'] };
const step = { '++': ['--'], '--': ['++'] };
const prefix = ['!', '~', '-'];

const isSpace = (c) => c === undefined || /\s/.test(c);
const own = (table, key) => (Object.hasOwn(table, key) ? table[key] : []);

function neighbours(number) {
  const [, digits, suffix] = number.match(/^(0x[\dA-Fa-f']+|[\d.']+)(\w*)$/) ??
    [];
  if (digits === undefined) return [];
  if (digits.includes('.')) return [`${Number(digits) + 1}.0${suffix}`];
  const value = BigInt(digits.replaceAll("'", ''));
  // One is enough for the long constants of tables.
  const near = value === 0n || value > 0xFFFFFFn
    ? [value + 1n] : [value - 1n, value + 1n];
  return near.map((each) => each + suffix);
}

// "12" in "uint8 buffer[12]".
function isArraySize(tokens, i) {
  const [type, name, bracket] = tokens.slice(Math.max(0, i - 3), i);
  return bracket?.text === '[' && name.kind === 'word' &&
    (type.kind === 'word' && type.text !== 'return' || type.text === '>');
}

function* atToken(source, tokens, i) {
  const { kind, text, at, end } = tokens[i];
  const replace = (operator, texts) =>
    texts.map((to) => ({ operator, at, end, to }));
  const before = tokens[i - 1]?.text;
  const spaced = isSpace(source[at - 1]) && isSpace(source[end]);
  if (before === 'operator') return;
  if (kind === 'number' && !isArraySize(tokens, i)) {
    yield* replace('constant', neighbours(text));
  } else if (kind === 'string') {
    yield* replace('text', [`"~${text.slice(1)}`]);
  } else if (kind === 'char' && text.length === 3) {
    const next = String.fromCharCode(text.charCodeAt(1) + 1);
    yield* replace('constant', [next === "'" ? "'('" : `'${next}'`]);
  } else if (kind === 'word') {
    const isLimit = text === 'min' || text === 'max';
    if (!isLimit || before === '::') yield* replace('word', own(words, text));
  } else if (kind === 'sign') {
    if (spaced) yield* replace('binary', own(binary, text));
    yield* replace('step', own(step, text));
    const isPrefix = prefix.includes(text) && !isSpace(source[end]) &&
      (text !== '~' || tokens[i].block === 'function');
    if (isPrefix) yield* replace('prefix', ['']);
  }
}

// "if (x)", "while (x)", "for (a; x; b)": the decision alone, not its effects.
function* atCondition(source, tokens, i) {
  const { text } = tokens[i];
  if (!['if', 'while', 'for'].includes(text) || tokens[i + 1].text !== '(') {
    return;
  }
  const close = tokens[i + 1].partner;
  const inside = tokens.slice(i + 2, close);
  const stops = inside.filter((token) => token.text === ';');
  let from = inside[0].at;
  let end = tokens[close].at;
  if (text === 'for') {
    if (stops.length !== 2) return;
    from = stops[0].end;
    end = stops[1].at;
  } else if (stops.length === 1) from = stops[0].end;
  const condition = source.slice(from, end);
  // "if (Refusal refusal = ...)" keeps its variable.
  const declares = /^\s*[\w:<>*& ]+[ *&](\w+) = /.exec(condition);
  for (const value of text === 'if' ? ['true', 'false'] : ['false']) {
    const joined = value === 'true' ? '|| true' : '&& false';
    const to = declares === null ? `(${condition}) ${joined}`
      : `${condition}; ${value}`;
    yield { operator: 'condition', at: from, end, to };
  }
}

function* atConditional(tokens, i) {
  const { text, at } = tokens[i];
  if (text !== '?') return;
  yield { operator: 'condition', at, end: at, to: '|| true ' };
  yield { operator: 'condition', at, end: at, to: '&& false ' };
}

const keywords = new Set(['return', 'break', 'continue', 'case', 'default',
  'goto', 'throw', 'if', 'for', 'while', 'do', 'else', 'switch', 'static',
  'const', 'constexpr', 'auto', 'delete', 'public', 'private', 'try', 'catch']);

// Not a declaration, whose name follows its type.
const target = String.raw`[\w:]+(?:<[\w:, ]*>)?`;
const assignment = String.raw`\s*(?:[-+*/%&|^]|<<|>>)?=`;
const expression = new RegExp(
  String.raw`^(\+\+|--|\*|\(|${target}(?:\.|->|\(|\[|\+\+|--|${assignment}))`);

// After a complete statement or at the beginning of a branch.
function startsStatement(tokens, i) {
  const before = tokens[i - 1];
  if (before?.text === ')') {
    return ['if', 'for', 'while'].includes(tokens[before.partner - 1]?.text);
  }
  return [';', '{', '}', 'else'].includes(before?.text);
}

function* atStatement(source, tokens, i) {
  const { text, at, end, block } = tokens[i];
  const next = tokens[i + 1]?.text;
  if (next === ';' && (text === 'break' || text === 'continue')) {
    yield { operator: 'jump', at, end,
      to: text === 'break' ? '' : 'break' };
  }
  if (block !== 'function' || !startsStatement(tokens, i) ||
      keywords.has(text)) {
    return;
  }
  let last = i;
  while (last < tokens.length && tokens[last].text !== ';') {
    if (['(', '[', '{'].includes(tokens[last].text)) {
      last = tokens[last].partner;
    }
    if (tokens[last].text === '}' && tokens[last].partner < i) return;
    if (tokens[last].text === ')' && tokens[last].partner < i) return;
    ++last;
  }
  const statement = source.slice(at, tokens[last]?.at);
  if (!expression.test(statement)) return;
  yield { operator: 'statement', at, end: tokens[last].at, to: '' };
}

// One call of a chain: "a.append(b).append(c)".
function* atChain(tokens, i) {
  const name = tokens[i + 1];
  const open = tokens[i + 2];
  if (tokens[i].text !== '.' || name?.kind !== 'word' || open?.text !== '(') {
    return;
  }
  const close = tokens[open.partner];
  const chained = tokens[i - 1].text === ')' ||
    tokens[open.partner + 1]?.text === '.';
  if (!chained || !/^(append|prepend|trim|add|set)/.test(name.text)) return;
  yield { operator: 'chain', at: tokens[i].at, end: close.end, to: '' };
}

const onOneLine = (text) => text.trim().replace(/\s*\n\s*/g, ' ');

function place(source, { operator, at, end, to }) {
  const removed = source.slice(at, end);
  // Lines keep their numbers, and with them the debugging of a mutant.
  const missing = removed.split('\n').length - to.split('\n').length;
  const text = to + '\n'.repeat(missing);
  const lineStart = source.lastIndexOf('\n', at - 1) + 1;
  const lineEnd = (source + '\n').indexOf('\n', end);
  return {
    operator, at, end, to: text,
    line: source.slice(0, at).split('\n').length,
    column: at - lineStart + 1,
    original: onOneLine(source.slice(lineStart, lineEnd)),
    mutated: onOneLine(
      source.slice(lineStart, at) + to + source.slice(end, lineEnd)),
  };
}

export function mutantsOf(source) {
  const tokens = tokenize(source);
  const found = new Map();
  for (const [i, token] of tokens.entries()) {
    if (token.compileTime) continue;
    for (const mutant of [
      ...atToken(source, tokens, i), ...atCondition(source, tokens, i),
      ...atConditional(tokens, i), ...atStatement(source, tokens, i),
      ...atChain(tokens, i),
    ]) {
      found.set(`${mutant.at} ${mutant.end} ${mutant.to}`,
        place(source, mutant));
    }
  }
  return [...found.values()];
}

export const apply = (source, { at, end, to }) =>
  source.slice(0, at) + to + source.slice(end);
