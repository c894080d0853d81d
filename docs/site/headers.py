"""The public headers as Doxygen reads them: functions, their parameters, and what all functions have in common."""

import re
import sys
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field
from pathlib import Path

import markup

HEADERS = ("qv8effect.h", "qv8com.h", "qv8platform.h", "qv8version.h")


@dataclass
class Parameter:
    """One line of a table: parameters that are described together, with their unit and range."""

    names: list[str]
    element: ElementTree.Element

    def limits(self, style):
        return self._parts(style)[0]

    def text(self, style):
        return self._parts(style)[1]

    def _parts(self, style):
        found = re.match(r"\[(.*?)\]\s*(.*)", markup.render(self.element, style), re.S)
        return found.groups() if found else ("", markup.render(self.element, style))


@dataclass
class Function:
    name: str
    returns: str
    arguments: list[tuple[str, str]]  # type and name
    brief: ElementTree.Element
    details: ElementTree.Element
    documented: list[Parameter]
    group: str
    line: int

    def names(self):
        return [name for _, name in self.arguments]

    def signature(self):
        arguments = [f"{kind} {name}" for kind, name in self.arguments]
        return f"{self.returns} {self.name}(" + (", ".join(arguments) or "void") + ");"

    def section(self, kind, title=""):
        """The text of @return, or of @par with a title."""
        for section in self.details.iter("simplesect"):
            if section.get("kind") == kind and (section.findtext("title") or "") == title:
                return section
        return None


@dataclass
class Section:
    """A part of what all functions have in common."""

    identity: str
    title: str
    element: ElementTree.Element
    parameters: list[Parameter]


@dataclass
class Header:
    name: str
    brief: ElementTree.Element
    about: ElementTree.Element
    sections: list[Section] = field(default_factory=list)
    functions: list[Function] = field(default_factory=list)
    groups: dict[str, ElementTree.Element] = field(default_factory=dict)  # the text of each group of functions
    statuses: list[tuple[str, str, ElementTree.Element]] = field(default_factory=list)
    macros: list[tuple[str, ElementTree.Element]] = field(default_factory=list)  # those that are described

    def shared(self):
        return {name: parameter for section in self.sections for parameter in section.parameters
                for name in parameter.names}


def plain_type(element):
    return re.sub(r"\s+\*", "*", "".join(element.itertext()).strip())


def parameters_of(element):
    return [Parameter([name.text for name in item.iter("parametername")], item.find("parameterdescription"))
            for item in element.iter("parameteritem")]


def read_function(member, group):
    arguments = [(plain_type(param.find("type")), param.findtext("declname") or "") for param in member.iter("param")]
    details = member.find("detaileddescription")
    return Function(member.findtext("name"), plain_type(member.find("type")), [a for a in arguments if a[1]],
                    member.find("briefdescription"), details, parameters_of(details), group,
                    int(member.find("location").get("line")))


def read_header(folder, name):
    compound = ElementTree.parse(Path(folder) / (name.replace(".", "_8") + ".xml")).getroot().find("compounddef")
    about = compound.find("detaileddescription")
    header = Header(name, compound.find("briefdescription"), about)
    for section in about.findall("sect1"):
        header.sections.append(Section(section.get("id").rsplit("_1")[-1], section.findtext("title"), section,
                                       parameters_of(section)))
    for part in compound.findall("sectiondef"):
        group = part.findtext("header") or ""
        if group:
            header.groups[group] = part.find("description")
        for member in part.findall("memberdef"):
            if member.get("kind") == "function":
                header.functions.append(read_function(member, group))
            if member.get("kind") == "define" and markup.render(member.find("briefdescription"), markup.PLAIN):
                header.macros.append((member.findtext("name"), member.find("briefdescription")))
            for value in member.findall("enumvalue"):
                if value.findtext("name").startswith("QV8_STATUS_"):
                    header.statuses.append((value.findtext("name"), value.findtext("initializer").lstrip("= "),
                                            value.find("briefdescription")))
    header.functions.sort(key=lambda function: function.line)
    return header


def problems(header):
    """What the reference would leave out: a parameter without words, or without unit and range."""
    found = []
    shared = header.shared()
    for function in header.functions:
        described = {name: parameter for parameter in function.documented for name in parameter.names}
        for name in function.names():
            parameter = described.get(name) or shared.get(name)
            place = f"{header.name}: {function.name}: parameter {name}"
            if parameter is None:
                found.append(f"{place} is not described")
            elif not parameter.limits(markup.PLAIN) or not parameter.text(markup.PLAIN).strip():
                found.append(f"{place} lacks its [unit, range] or its meaning")
        if not markup.render(function.brief, markup.PLAIN):
            found.append(f"{header.name}: {function.name} is not described")
    return found


def read_headers(folder):
    """All public headers by name. Ends the program when anything in them is not described."""
    read = {name: read_header(folder, name) for name in HEADERS}
    found = [problem for header in read.values() for problem in problems(header)]
    if found:
        sys.exit("\n".join(found))
    return read
