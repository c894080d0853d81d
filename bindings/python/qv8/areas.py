"""The part of a picture that an effect changes: `area=` of every effect that takes one.

Coordinates are pixels from the upper left corner; right and bottom are excluded. `~area` is everything but the area.
"""

from dataclasses import dataclass, replace
from typing import Any, ClassVar


class Area:
    """What all areas have in common."""

    kind: ClassVar[str]
    outside: bool

    def __invert__(self):
        return replace(self, outside=not self.outside)


@dataclass(frozen=True)
class _Sides(Area):
    left: int
    top: int
    right: int
    bottom: int
    outside: bool = False

    @property
    def value(self):
        return (self.left, self.top, self.right, self.bottom)


class Rectangle(_Sides):
    """A rectangle; its part within the picture counts."""

    kind = "rectangle"


class Ellipse(_Sides):
    """The ellipse that a rectangle encloses."""

    kind = "ellipse"


@dataclass(frozen=True)
class Polygon(Area):
    """Corners (x, y), at least two; the outline is part of the area."""

    kind = "polygon"
    points: Any
    outside: bool = False

    @property
    def value(self):
        return [tuple(point) for point in self.points]


@dataclass(frozen=True, eq=False)
class Mask(Area):
    """True of a boolean array of the picture's size, white of a picture or of the file of one. An array may also stand
    for its area without this."""

    kind = "mask"
    value: Any
    outside: bool = False


@dataclass(frozen=True, eq=False)
class Kernel:
    """Weights of custom_filter: rows of whole numbers, up to 9 x 9, an odd number of each. Without a divisor it is
    their sum where that is in 1..255, else 1."""

    weights: Any
    divisor: "int | None" = None
    offset: "int | None" = None
