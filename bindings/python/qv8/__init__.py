"""Picture effects on NumPy arrays: arrays in, arrays out.

Pictures are arrays of uint8, H x W for grey levels, H x W x 3 for red, green, blue and H x W x 4 with alpha, of any
strides, and whatever offers such an array, like a picture of Pillow. An effect that is given a qv8.Image gives one
back, which keeps its depth and costs no conversion.

    import qv8

    picture = qv8.read("photo.jpg")
    sharper = qv8.sharp(picture, strength=40, area=qv8.Ellipse(100, 80, 540, 400))
    qv8.write("sharper.png", sharper)

Every effect takes progress=, a function that is told the percentage and cancels by returning False.
"""

from .areas import Area, Ellipse, Kernel, Mask, Polygon, Rectangle
from .errors import Cancelled, Error, FileError, ValueRefused
from ._native import Image, Recipe, decode, encode, read, write
from .effects import *  # noqa: F403: every effect
from .effects import __all__ as effect_names

__all__ = [
    "Area", "Cancelled", "Ellipse", "Error", "FileError", "Image", "Kernel", "Mask", "Polygon", "Recipe", "Rectangle",
    "ValueRefused", "decode", "encode", "effect_names", "read", "write", *effect_names,
]
