// C++ text as tokens, as far as mutating it takes.

const lexeme = new RegExp([
  String.raw`(?<space>\s+|//[^\n]*|/\*[^]*?\*/)`,
  String.raw`(?<preprocessor>(?<=^[ \t]*)#(?:\\\n|[^\n])*)`,
  String.raw`(?<string>"(?:\\.|[^"\\])*")`,
  String.raw`(?<char>'(?:\\.|[^'\\])+')`,
  String.raw`(?<number>\d(?:[eE][+-]|[\w.]|'(?=\w))*)`,
  String.raw`(?<word>[A-Za-z_]\w*)`,
  String.raw`(?<sign><=>|<<=|>>=|->\*|\.\.\.|::|->|\+\+|--|&&|\|\||` +
    String.raw`[-+*/%&|^=!<>]=|<<|>>|.)`,
].join('|'), 'gmy');

// Brackets know their partner.
function matchBrackets(tokens) {
  const partners = { ')': '(', ']': '[', '}': '{' };
  const open = [];
  for (const [i, { text, kind }] of tokens.entries()) {
    if (kind !== 'sign') continue;
    if ('([{'.includes(text)) open.push(i);
    if (!Object.hasOwn(partners, text)) continue;
    const from = open.pop();
    tokens[from].partner = i;
    tokens[i].partner = from;
  }
}

// What a brace opens, judged by what stands before it.
function kindOfBlock(tokens, brace, inFunction) {
  const before = tokens[brace - 1]?.text ?? '';
  if (['else', 'do', 'try', '{', '}', ';', ':'].includes(before)) {
    return inFunction ? 'function' : 'other';
  }
  const head = [];
  for (let i = brace - 1; i >= 0 && !'{};'.includes(tokens[i].text); --i) {
    head.unshift(tokens[i].text);
  }
  if (head[0] === 'namespace') return 'other';
  if (/^(class|struct|enum|union)$/m.test(head.join('\n')) &&
      !head.includes('(')) {
    return 'other';
  }
  if (before === ')' || ['const', 'noexcept', 'mutable'].includes(before)) {
    return 'function';
  }
  return head.includes('->') && before !== '=' && head.includes('[')
    ? 'function' : 'initializer';
}

// Marks each token with the kind of the innermost block around it.
function markBlocks(tokens) {
  const blocks = [];
  const inFunction = () => blocks.includes('function');
  for (const [i, token] of tokens.entries()) {
    if (token.text === '}') blocks.pop();
    token.block = blocks.at(-1) ?? 'other';
    if (token.text === '{') blocks.push(kindOfBlock(tokens, i, inFunction()));
  }
}

// Declarations without run-time code: from one of these words up to `end`.
const compileTime = { static_assert: ';', using: ';', namespace: '{',
  concept: ';', BRINDLE_PRINTF: ')', friend: ';' };

function markCompileTime(tokens) {
  let end = null;
  for (const [i, token] of tokens.entries()) {
    if (Object.hasOwn(compileTime, token.text)) end ??= compileTime[token.text];
    const afterTemplate = tokens[i - 1]?.text === 'template';
    if (token.text === '<' && afterTemplate) end ??= '>';
    token.compileTime = end !== null;
    if (token.text === end) end = null;
  }
}

export function tokenize(source) {
  const tokens = [...source.matchAll(lexeme)].flatMap((match) => {
    const [kind] = Object.entries(match.groups).find(([, text]) => text);
    if (kind === 'space' || kind === 'preprocessor') return [];
    const at = match.index;
    return [{ kind, text: match[0], at, end: at + match[0].length }];
  });
  matchBrackets(tokens);
  markBlocks(tokens);
  markCompileTime(tokens);
  return tokens;
}
