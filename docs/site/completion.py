"""Makes the completions of the command line for bash, zsh and fish."""

import argparse
import re
import shlex
from pathlib import Path

from program import Program


class Option:
    """An option of a command: its names, what it takes, and what can be offered for that."""

    def __init__(self, option, parameter):
        self.names = option["names"]
        self.help = option["help"]
        self.form = option["form"]
        self.choices = parameter["choices"] if parameter else []
        self.takes_file = parameter["file"] if parameter else option["form"] in ("FILE", "DIR")


def commands_of(program):
    """Each command with its help and options."""
    for command in program.commands:
        effect = next((effect for effect in program.effects if effect["name"] == command["name"]), None)
        parameters = {"--" + p["name"]: p for p in (effect["parameters"] + effect["area"] if effect else [])}
        options = [Option(option, parameters.get(option["names"][-1])) for option in command["options"]
                   if option["names"]]
        yield command["name"], command["help"], options


def bash(program):
    commands = list(commands_of(program))
    values, options = "", ""
    for name, _, known in commands:
        options += f"    {name}) options='{' '.join(n for o in known for n in o.names)}' ;;\n"
        for option in (option for option in known if option.form and not option.takes_file):
            keys = "|".join(f"'{name} {word}'" for word in option.names)
            values += f"    {keys}) choices='{' '.join(option.choices)}' ;;\n"
    names = " ".join(name for name, _, _ in commands)
    return f"""# Completion of qv8 for bash.
_qv8() {{
  local word=${{COMP_WORDS[COMP_CWORD]}} options='' choices=none
  if [ "$COMP_CWORD" = 1 ] || {{ [ "$COMP_CWORD" = 2 ] && [ "${{COMP_WORDS[1]}}" = help ]; }}; then
    mapfile -t COMPREPLY < <(compgen -W '{names}' -- "$word")
    return
  fi
  case "${{COMP_WORDS[1]}} ${{COMP_WORDS[COMP_CWORD-1]}}" in
{values}  esac
  if [ "$choices" != none ]; then
    compopt +o default
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
    return
  fi
  case "${{COMP_WORDS[1]}}" in
{options}  esac
  case "$word" in
    -*) mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word") ;;
  esac
}}
complete -o default -F _qv8 qv8
"""


def zsh_option(option):
    words = re.sub(r"([\[\]:\\])", r"\\\1", option.help)
    values = f":{option.form}:({' '.join(option.choices)})" if option.choices else f":{option.form}:_files" \
        if option.takes_file else f":{option.form}: " if option.form else ""
    return " ".join(shlex.quote(f"{name}[{words}]{values}") for name in option.names)


def zsh(program):
    names, cases = "", ""
    for name, text, known in commands_of(program):
        names += f"    {shlex.quote(name + ':' + text.replace(':', ' '))}\n"
        options = " \\\n        ".join(zsh_option(option) for option in known)
        rest = "'1:command:(${commands%%:*})'" if name == "help" else "'*:file:_files'"
        cases += f"    {name})\n      _arguments {options + ' ' if options else ''}{rest} ;;\n"
    return f"""#compdef qv8
# Completion of qv8 for zsh.
_qv8() {{
  local -a commands=(
{names}  )
  if (( CURRENT == 2 )); then
    _describe command commands
    return
  fi
  local name=$words[2]
  shift words
  (( CURRENT-- ))
  case $name in
{cases}  esac
}}
_qv8 "$@"
"""


def fish(program):
    lines = ["# Completion of qv8 for fish."]
    for name, text, known in commands_of(program):
        lines.append(f"complete -c qv8 -n __fish_use_subcommand -f -a {name} -d {shlex.quote(text)}")
        for option in known:
            spelled = " ".join(f"-l {n[2:]}" if n.startswith("--") else f"-s {n[1:]}" for n in option.names)
            takes = f"-x -a {shlex.quote(' '.join(option.choices))}" if option.choices else "-r" \
                if option.takes_file else "-x" if option.form else ""
            lines.append(f"complete -c qv8 -n '__fish_seen_subcommand_from {name}' {spelled} {takes} "
                         f"-d {shlex.quote(option.help)}")
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("--qv8", "--out"):
        parser.add_argument(name, required=True)
    options = parser.parse_args()
    program = Program(options.qv8)
    out = Path(options.out)
    out.mkdir(parents=True, exist_ok=True)
    for name, make in (("qv8.bash", bash), ("_qv8", zsh), ("qv8.fish", fish)):
        (out / name).write_text(make(program))


if __name__ == "__main__":
    main()
