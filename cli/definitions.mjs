// Every command with its operands, options and examples: what is accepted, the
// help, the manual page and the completions are all made of this.

const hex = { type: 'boolean', help: 'read hex digits, as pasted from a terminal or a log' };
const color = { type: 'string', value: 'WHEN', help: 'always, never or auto (the default)',
  choices: ['always', 'never', 'auto'] };
const output = { type: 'string', short: 'o', value: 'FILE',
  help: 'write there, not to standard output', isFile: true };
const block = { type: 'string', value: 'WHICH',
  help: 'in a blob: the index of the block, or its UUID[/INSTANCE]' };
const json = { type: 'boolean', help: 'as JSON' };

export const globalOptions = {
  color,
  help: { type: 'boolean', short: 'h', help: 'show this help' },
  version: { type: 'boolean', help: 'show the version' },
};

export const commands = {
  show: {
    summary: 'show what is in a block or a blob',
    operands: 'FILE...',
    options: {
      json: { type: 'boolean', help: 'as one JSON document, which "build" reads' },
      ndjson: { type: 'boolean', help: 'as one JSON document a line, for many files' },
      bytes: { type: 'boolean', help: 'as bytes, each with what it means' },
      html: { type: 'string', value: 'PAGE', isFile: true,
        help: 'write a page with the values and the bytes side by side' },
      hex,
    },
    examples: [
      ['thermostat.bin', 'the fields of a block, or of all the blocks of a blob'],
      ['--bytes thermostat.bin', 'what every byte means'],
      ['--json thermostat.bin | brindle build - -o copy.bin', 'the same bytes again'],
      ['--html page.html configuration.bin', 'a page to look around in'],
      ['--hex -', 'paste hex digits, end with Ctrl-D'],
    ],
  },
  check: {
    summary: 'say whether files can be read, and where not',
    operands: 'FILE...',
    options: {
      format: { type: 'string', value: 'FORMAT', choices: ['text', 'json', 'github'],
        help: 'text (the default), json, or github for annotations' },
      hex,
    },
    examples: [
      ['*.bin', 'one line for each file; exit code 1 if one cannot be read'],
      ['--format github config/*.bin', 'in a workflow'],
    ],
  },
  build: {
    summary: 'build a block of JSON, or a blob of several',
    operands: 'SPEC.json...',
    options: { output, blob: { type: 'boolean', help: 'make a blob, also of one block' } },
    examples: [
      ['thermostat.json -o thermostat.bin', 'of a BlockSpec, or of what "show --json" writes'],
      ['--blob thermostat.json network.json -o configuration.bin', 'of several'],
    ],
  },
  schema: {
    summary: 'print the BlockSpec of a block as JSON, for "build"',
    operands: 'FILE',
    options: { block, hex },
    examples: [
      ['thermostat.bin > thermostat.json', 'to edit, and build again'],
      ['--block 2 configuration.bin', 'of the third block of a blob'],
    ],
  },
  edit: {
    summary: 'change values of a block',
    operands: 'FILE',
    options: {
      set: { type: 'string', multiple: true, value: 'PATH=VALUE', required: true,
        help: 'the value for a field; may be repeated' },
      block,
      output,
      hex,
    },
    examples: [
      ['thermostat.bin --set target=19.5 --set mode=heat -o thermostat.bin', 'an enum by name'],
      ['net.bin --set ipv4.prefixBits=16 --set "mac=[2,0,94,16,66,7]" -o net.bin',
        'a field of a record, an array as JSON'],
      ['all.bin --block 2e8f60b3-47d1-4c95-a7fe-0c9d3b5a1e68/0 --set vlan=42 -o all.bin',
        'one block of a blob'],
    ],
  },
  blob: {
    summary: 'join blocks to a blob, split it, list what is in it',
    operands: 'join|split|list FILE...',
    subcommands: ['join', 'split', 'list'],
    options: { output: { ...output, help: 'join: write there; split: the folder for the blocks' },
      json, hex },
    examples: [
      ['join thermostat.bin network.bin -o configuration.bin', 'in this order'],
      ['split configuration.bin -o blocks', 'into blocks/0-thermostat.bin and so on'],
      ['list configuration.bin', 'index, offset, size, uuid, instance, name'],
    ],
  },
  diff: {
    summary: 'compare two files block by block and value by value',
    operands: 'OLD NEW',
    options: { json, hex },
    examples: [
      ['yesterday.bin today.bin', 'exit code 1 if they differ'],
      ['--json yesterday.bin today.bin', 'for a program'],
    ],
  },
  hash: {
    summary: 'print the configuration hash of blobs, or check a list of them',
    operands: 'FILE...',
    options: {
      check: { type: 'string', value: 'LIST', isFile: true,
        help: 'compare with a list that "hash" printed' },
      hex,
    },
    examples: [
      ['*.bin > hashes', 'in the format of sha256sum'],
      ['--check hashes', 'say which are still the same'],
    ],
  },
  completion: {
    summary: 'print completions for a shell',
    operands: 'bash|zsh',
    subcommands: ['bash', 'zsh'],
    options: {},
    examples: [['bash > /etc/bash_completion.d/brindle', 'for bash'],
      ['zsh > "${fpath[1]}/_brindle"', 'for zsh']],
  },
};
