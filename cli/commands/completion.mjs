// brindle completion: what a shell offers, made of the definitions.
import { commands, globalOptions } from '../definitions.mjs';
import { Failure, FINE } from '../failure.mjs';
import { print } from '../streams.mjs';

const shells = { bash, zsh };

export default function completion([shell, ...others]) {
  if (!Object.hasOwn(shells, shell ?? '') || others.length !== 0) {
    throw new Failure('completion is followed by bash or zsh');
  }
  print(shells[shell]());
  return FINE;
}

const optionsOf = (name) => Object.entries({ ...commands[name].options, ...globalOptions });
const choices = Object.fromEntries(Object.keys(commands).flatMap((name) =>
  optionsOf(name).filter(([, option]) => option.choices)
    .map(([option, { choices }]) => [`--${option}`, choices.join(' ')])));

function bash() {
  const cases = (indent, listOf) => Object.keys(commands).filter((name) => listOf(name).length !== 0)
    .map((name) => `${indent}${name}) words='${listOf(name).join(' ')}' ;;`).join('\n');
  const dashed = (name) => optionsOf(name).map(([option]) => `--${option}`);
  return `# bash completion of brindle
_brindle() {
  local word="\${COMP_WORDS[COMP_CWORD]}" previous="\${COMP_WORDS[COMP_CWORD-1]}" words=
  case "$previous" in
${Object.entries(choices).map(([option, list]) => `    ${option}) words='${list}' ;;`).join('\n')}
  esac
  if [[ $COMP_CWORD -eq 1 ]]; then
    words='${Object.keys(commands).join(' ')} --help --version'
  elif [[ $word == -* ]]; then
    case "\${COMP_WORDS[1]}" in
${cases('      ', dashed)}
    esac
  elif [[ $COMP_CWORD -eq 2 ]]; then
    case "\${COMP_WORDS[1]}" in
${cases('      ', (name) => commands[name].subcommands ?? [])}
    esac
  fi
  COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -o default -F _brindle brindle`;
}

const quoted = (text) => text.replace(/[\\'"[\]:]/g, (sign) => sign === "'" ? "'\\''" : `\\${sign}`);

function zsh() {
  const optionLine = ([name, { help, value, isFile, multiple, choices: list }]) => {
    const argument = list ? `:${value}:(${list.join(' ')})` : value ? `:${value}:${isFile ? '_files' : ''}` : '';
    return `        '${multiple ? '*' : ''}--${name}[${quoted(help)}]${argument}'`;
  };
  const operands = ({ subcommands }) => subcommands ? `        '1:what:(${subcommands.join(' ')})' '*:file:_files'`
    : "        '*:file:_files'";
  return `#compdef brindle
_brindle() {
  local -a commands=(
${Object.entries(commands).map(([name, { summary }]) => `    '${name}:${quoted(summary)}'`).join('\n')}
  )
  if (( CURRENT == 2 )); then
    _describe command commands
    return
  fi
  local command="$words[2]"
  shift words
  (( CURRENT-- ))
  case "$command" in
${Object.entries(commands).map(([name, command]) => `    ${name})
      _arguments -s \\
${[...optionsOf(name).map(optionLine), operands(command)].join(' \\\n')}
      ;;`).join('\n')}
  esac
}
_brindle "$@"`;
}
