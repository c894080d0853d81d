"""Writes the functions of all effects and their type stubs from the description that the native module gives.

    generate.py FOLDER    makes FOLDER/qv8/effects.py and effects.pyi; the native module is there already
"""

import importlib
import sys
import textwrap
from pathlib import Path

TYPES = {
    "int": "int",
    "float": "float",
    "bool": "bool",
    "str": "str",
    "colour": "tuple[int, int, int]",
    "point": "tuple[int, int]",
    "points": "Sequence[tuple[int, int]]",
    "rectangle": "tuple[int, int, int, int]",
    "kernel": "Union[str, ArrayLike, Kernel]",
    "picture": "Picture",
    "mask": "Picture",
}
FORMS = {"colour": "(red, green, blue)", "rectangle": "(left, top, right, bottom)", "point": "(x, y)",
         "points": "corners (x, y)", "mask": "array of bool"}
HEAD = '"""The effects. Made by generate.py from the description that the command line has too."""\n\n'
STUB_IMPORTS = """\
from os import PathLike
from typing import Any, Callable, Literal, Optional, Sequence, Union, overload

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._native import Image
from .areas import Area, Kernel

Picture = Union[ArrayLike, Image, str, PathLike[str]]
Array = NDArray[np.uint8]

"""


def load_native(folder):
    sys.path.insert(0, str(Path(folder, "qv8")))  # the package itself is what is being made
    return importlib.import_module("_native")


def python_name(name):
    return name.replace("-", "_")


def type_of(parameter):
    if parameter["kind"] == "choice":
        return "Literal[" + ", ".join(map(repr, parameter["choices"])) + "]"
    return TYPES[parameter["kind"]]


def in_order(effect):
    """What must be given comes first."""
    return sorted(effect["parameters"], key=lambda parameter: not parameter["required"])


def signature(effect, image=None, mask=None):
    """The parameters; with their types where the type of the picture is given, as in stubs."""
    typed = image is not None
    words = []
    if effect["takes_picture"]:
        words.append("image" + (f": {image}" if typed else ""))
    keywords = False
    for parameter in in_order(effect):
        word = python_name(parameter["name"])
        if mask and parameter["kind"] == "mask":
            words += ["*"] if not keywords else []
            keywords = True
            words.append(word + (": Picture" if mask == "given" else ": None = None"))
            continue
        if typed:
            optional = not parameter["required"] and parameter["default"] is None
            word += f": Optional[{type_of(parameter)}]" if optional else f": {type_of(parameter)}"
        if not parameter["required"]:
            word += (" = " if typed else "=") + repr(parameter["default"])
        words.append(word)
    words += ["*"] if not keywords else []
    if effect["takes_area"]:
        words.append("area" + (": Union[Area, ArrayLike, None] = None" if typed else "=None"))
    words.append("progress" + (": Optional[Callable[[int], Any]] = None" if typed else "=None"))
    return ", ".join(words)


def documentation(effect):
    lines = [effect["help"][0].upper() + effect["help"][1:] + "."]
    rows = []
    for parameter in in_order(effect):
        limits = parameter["limits"].replace(" unless given", " by default")
        parts = [part for part in (parameter["help"], FORMS.get(parameter["kind"], ""), limits) if part]
        rows.append((python_name(parameter["name"]), "; ".join(parts)))
    if effect["takes_area"]:
        rows.append(("area", "the part that changes: Rectangle, Ellipse, Polygon, Mask or an array of bool"))
    rows.append(("progress", "told the percentage; cancels by returning False"))
    lines.append("")
    for name, words in rows:
        lines += textwrap.wrap(f"{name}: {words}", 100, initial_indent="  ", subsequent_indent="      ")
    if effect["gives_mask"] != "never":
        lines += ["", "Returns the picture and its mask" + (", where a mask is given."
                                                            if effect["gives_mask"] == "with mask" else ".")]
    return '    """' + "\n    ".join(lines).rstrip().replace("\n    \n", "\n\n").replace("\\", "\\\\") + '\n    """\n'


def function(effect):
    name = python_name(effect["name"])
    values = "".join(python_name(parameter["name"]) + ", " for parameter in effect["parameters"])
    image = "image" if effect["takes_picture"] else "None"
    area = "area" if effect["takes_area"] else "None"
    return (f"def {name}({signature(effect)}):\n" + documentation(effect) +
            f'    return _apply("{effect["name"]}", {image}, ({values}), {area}, progress)\n\n\n')


def stubs(effect):
    """One for arrays and one for Images, and these again where a mask makes a pair of the result."""
    kinds = [("Image", "Image"), ("ArrayLike", "Array")] if effect["takes_picture"] else [("", "Image")]
    masks = {"never": [None], "always": ["always"], "with mask": ["none", "given"]}[effect["gives_mask"]]
    text = ""
    for image, result in kinds:
        for mask in masks:
            pair = mask in ("always", "given")
            mask_type = "NDArray[np.bool_]" if result == "Array" else "Image"
            returned = f"tuple[{result}, {mask_type}]" if pair else result
            given = mask if mask in ("none", "given") else None
            text += "@overload\n" if len(kinds) * len(masks) > 1 else ""
            text += f"def {python_name(effect['name'])}({signature(effect, image, given)}) -> {returned}:"
            text += "\n" + documentation(effect) + "    ...\n" if not pair or mask == "always" else " ...\n"
    return text


def main(folder):
    effects = load_native(folder).describe()
    names = [python_name(effect["name"]) for effect in effects]
    listed = "__all__ = [\n" + "".join(f'    "{name}",\n' for name in names) + "]\n"
    source = HEAD + "from ._native import apply as _apply\n\n" + listed + "\n\n" + "".join(map(function, effects))
    package = Path(folder, "qv8")
    package.joinpath("effects.py").write_text(source.rstrip() + "\n")
    package.joinpath("effects.pyi").write_text(HEAD + STUB_IMPORTS + listed.replace("= [", ": list[str] = [") + "\n" +
                                               "\n".join(map(stubs, effects)))


main(sys.argv[1])
