// The manual page in roff, made of the definitions: scripts/man.mjs writes it.
import { commands, globalOptions } from './definitions.mjs';
import { optionName } from './help.mjs';

// A line must not begin with a dot or a quote, and a hyphen is one.
const roff = (text) => text.replace(/\\/g, '\\e').replace(/-/g, '\\-').replace(/^([.'])/gm, '\\&$1');

const option = (entry) => ['.TP', `.B ${roff(optionName(entry))}`, roff(entry[1].help)];

function section([name, { summary, operands, options, examples }]) {
  return [
    `.SS brindle ${name} [options] ${roff(operands)}`,
    `${roff(summary[0].toUpperCase() + summary.slice(1))}.`,
    ...Object.entries(options).flatMap(option),
    ...examples.flatMap(([line, meaning]) =>
      ['.PP', `${roff(meaning[0].toUpperCase() + meaning.slice(1))}:`, '.PP', '.RS 4', '.nf',
        roff(`brindle ${name} ${line}`), '.fi', '.RE']),
  ];
}

export function manual(version) {
  return [
    `.TH BRINDLE 1 "" "brindle ${version}" "User Commands"`,
    '.SH NAME',
    'brindle \\- look at, check, build, edit, compare and hash configuration files',
    '.SH SYNOPSIS',
    '.B brindle',
    '.I command',
    '[options] ...',
    '.SH DESCRIPTION',
    'A configuration file is a block, which is a schema and a record of values, or a blob, which is',
    'several blocks. Which of the two a file is can be seen from its bytes. The file',
    '.B \\-',
    'is standard input. Data goes to standard output, everything else to standard error.',
    '.SH COMMANDS',
    ...Object.entries(commands).flatMap(section),
    '.SH OPTIONS OF ALL COMMANDS',
    ...Object.entries(globalOptions).flatMap(option),
    '.SH EXIT STATUS',
    '.TP', '.B 0', 'Fine.', '.TP', '.B 1', 'A file was refused, or two are different.',
    '.TP', '.B 2', 'Wrong usage, or a file that cannot be read or written.',
    '.SH ENVIRONMENT',
    '.TP', '.B NO_COLOR', 'If set, there is no colour.',
    '.TP', '.B FORCE_COLOR', 'If set to anything but 0, there is colour also where there is no terminal.',
    '',
  ].join('\n');
}
