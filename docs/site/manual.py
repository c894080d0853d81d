"""Makes the manual pages qv8(1) and qv8effect(3), compressed as systems keep them."""

import argparse
import gzip
import itertools
import re
import tomllib
from pathlib import Path

import headers
import markup
from program import Program

HERE = Path(__file__).parent
escape = markup.escape_roff


def heading(name, section, title, version):
    return f'.TH {name.upper()} {section} "" "Qv8Effect {version}" "{title}"\n.nh\n.ad l\n'


def described(name, text):
    """A name, and its description below it."""
    return f".TP\n\\fB{escape(name)}\\fR\n{escape(text) or '.br'}\n"


def joined(*parts):
    return "; ".join(part for part in parts if part)


def option_of_effect(option):
    name = f"--{option['name']} {option['form']}".strip()
    return described(name, joined(option["help"], option["limits"], "required" if option["required"] else ""))


def option_of_command(option):
    return described(" ".join([", ".join(option["names"]) or option["word"], option["form"]]).strip(), option["help"])


def effect_part(effect, examples):
    text = f".SS qv8 {escape(effect['name'])}\n{escape(effect['help'].capitalize())}.\n"
    text += "".join(option_of_effect(option) for option in effect["parameters"] + effect["area"])
    if examples:
        text += f".PP\nFor example:\n.PP\n.RS 4\n.nf\nqv8 {escape(examples[0][0])}\n.fi\n.RE\n"
    return text


def command_page(program, examples):
    offered = {command["name"]: command for command in program.commands}
    effects = [effect for effect in program.effects if effect["name"] in offered]
    others = [command for command in program.commands if command["group"] == "Other commands"]
    files = [option for option in offered["sharp"]["options"] if option["group"] == "Files"]
    codes = re.search(r"Exit codes: (.*)\.", program.footer, re.S)[1].split(";")
    text = heading("qv8", 1, "Picture effects", program.version)
    text += f".SH NAME\nqv8 \\- {escape(program.help[0].lower() + program.help[1:].rstrip('.'))}\n"
    text += (".SH SYNOPSIS\n.B qv8\n.I EFFECT\n[options] \\fIINPUT OUTPUT\\fR\n.br\n.B qv8 run\n.I CHAIN\n"
             "\\fB\\-\\-out\\-dir\\fR \\fIDIR FILES\\fR...\n.br\n.B qv8 help\n.I EFFECT\n")
    text += f".SH DESCRIPTION\n{escape(' '.join(program.footer.split('Exit codes')[0].split()))}\n"
    text += ".SH COMMANDS\n"
    for command in others:
        text += f".SS qv8 {escape(command['name'])}\n{escape(command['help'].capitalize())}.\n"
        text += "".join(option_of_command(option) for option in command["options"] if "--help" not in option["names"])
    text += ".SH OPTIONS OF ALL EFFECTS\n" + "".join(option_of_command(option) for option in files)
    for family in program.families():
        members = [effect for effect in effects if effect["family"] == family]
        if members:
            text += f".SH {escape(family.upper())}\n"
            text += "".join(effect_part(effect, examples.get(effect["name"])) for effect in members)
    text += ".SH EXIT STATUS\n"
    for code in codes:
        number, meaning = " ".join(code.split()).split(" ", 1)
        text += described(number, meaning)
    return text + ".SH SEE ALSO\n.BR qv8effect (3)\n"


def function_part(function):
    roff = markup.ROFF
    text = f".SS {function.name}\n.nf\n\\fB{escape(function.signature())}\\fR\n.fi\n.PP\n"
    text = text.replace(", ", ",\n    ")
    text += markup.render(function.brief, roff) + " " + markup.render(function.details, roff) + "\n"
    for parameter in function.documented:
        text += f".TP\n\\fI{', '.join(parameter.names)}\\fR [{parameter.limits(roff)}]\n{parameter.text(roff)}\n"
    for title, section in (("Returns", function.section("return")), ("Statuses:", function.section("par", "Statuses"))):
        if section is not None:
            text += f".PP\n{title} {markup.render(section, roff)}\n"
    return text


def library_page(header, version):
    roff = markup.ROFF
    about = markup.render(header.brief, roff) + "\n" + markup.render(header.about, roff)
    text = heading("qv8effect", 3, "Picture effects", version)
    text += ".SH NAME\nqv8effect \\- effects on packed device\\-independent bitmaps\n"
    text += ".SH SYNOPSIS\n.nf\n\\fB#include <qv8effect.h>\n#include <qv8com.h>\\fR\n.fi\n.PP\n"
    text += "Link with \\fB\\-lQv8Effect \\-lQv8Com \\-lQv8Platform\\fR.\n"
    text += f".SH DESCRIPTION\n{about}\n"
    for section in header.sections:
        text += f".SS {escape(section.title)}\n{markup.render(section.element, roff)}\n"
        for parameter in section.parameters:
            text += f".TP\n\\fI{parameter.names[0]}\\fR [{parameter.limits(roff)}]\n{parameter.text(roff)}\n"
    for group, members in itertools.groupby(header.functions, lambda function: function.group):
        text += f".SH {escape(group.upper())}\n{markup.render(header.groups[group], roff)}\n"
        text += "".join(function_part(function) for function in members)
    return text + ".SH SEE ALSO\n.BR qv8 (1)\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("--xml", "--qv8", "--out"):
        parser.add_argument(name, required=True)
    options = parser.parse_args()
    program = Program(options.qv8)
    examples = tomllib.loads((HERE / "examples.toml").read_text())["examples"]
    out = Path(options.out)
    out.mkdir(parents=True, exist_ok=True)
    library = headers.read_headers(options.xml)["qv8effect.h"]
    for name, text in (("qv8.1", command_page(program, examples)),
                       ("qv8effect.3", library_page(library, program.version))):
        (out / f"{name}.gz").write_bytes(gzip.compress(text.encode(), mtime=0))


if __name__ == "__main__":
    main()
