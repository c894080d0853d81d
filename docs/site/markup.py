"""Turns the text of comments, as Doxygen's XML has it, into HTML, into the language of manual pages, or into words."""

import html
import re
from dataclasses import dataclass
from typing import Callable


@dataclass(frozen=True)
class Style:
    escape: Callable[[str], str]
    code: tuple[str, str]
    item: tuple[str, str]


def escape_roff(text):
    return re.sub(r"(?m)^(?=[.'])", r"\\&", text.replace("\\", "\\e").replace("-", "\\-"))


HTML = Style(html.escape, ("<code>", "</code>"), ("<li>", "</li>"))
ROFF = Style(escape_roff, ("\\fB", "\\fR"), ("\n.IP \\(bu 2\n", "\n"))
PLAIN = Style(lambda text: text, ("", ""), ("- ", ""))

# Shown in places of their own.
APART = {"parameterlist", "simplesect", "sect1", "title"}


def render(element, style):
    """The text of an element, without its parameters and sections; empty when there is none."""
    if element is None:
        return ""
    return re.sub(r"\s+", " ", _inside(element, style)).strip()


def _inside(element, style):
    text = style.escape(element.text or "")
    for child in element:
        if child.tag not in APART:
            before, after = {"computeroutput": style.code, "listitem": style.item}.get(child.tag, ("", ""))
            text += before + _inside(child, style) + after + ("\n" if child.tag == "para" else "")
        text += style.escape(child.tail or "")
    return text
