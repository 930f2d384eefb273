"""What models, engines and texts tell of themselves.

Programs that only draw do without: how such classes are made takes longer to import than all else
of the module.
"""

from __future__ import annotations

from dataclasses import dataclass
from typing import TYPE_CHECKING, NamedTuple, Tuple

if TYPE_CHECKING:
    from ._model import Model

Color = Tuple[float, float, float, float]


@dataclass(frozen=True)
class Plugin:
    """A plugin that was named, or found. `reason` tells why it couldn't be loaded."""

    path: str
    name: str
    reason: str


@dataclass(frozen=True)
class Device:
    """A device that off-screen views can be drawn by. `refusal` tells why it can't be used."""

    driver: str
    node: str
    pci: str
    refusal: str
    software: bool


@dataclass(frozen=True)
class MeshInfo:
    """A mesh of a model, at one of the places where it stands; ids of objects count likewise.

    `extent` is the box in the model's own space: its least corner, and its greatest.
    """

    name: str
    vertex_count: int
    face_count: int
    extent: Tuple[Tuple[float, ...], Tuple[float, ...]]


@dataclass(frozen=True)
class Texture:
    """A texture that materials name. `reason` tells why the picture lacks it; empty if not."""

    name: str
    path: str
    reason: str
    width: int
    height: int


@dataclass(frozen=True)
class Material:
    """A material, as the file has it; colours are red, green, blue and alpha, mostly 0 to 1."""

    name: str
    ambient: Color
    diffuse: Color
    specular: Color
    shininess: float
    opacity: float
    textures: Tuple[Texture, ...]


@dataclass(frozen=True)
class Pick:
    """What a ray meets first.

    `model` is the one that was met, and `object` its mesh as the layer "object" counts. `point` is
    in the world, `distance` in lengths of the ray's direction, `barycentric` the shares of the
    face's corners. `material` is -1 for a face without one.
    """

    model: Model
    mesh: int
    face: int
    object: int
    material: int
    barycentric: Tuple[float, float, float]
    distance: float
    point: Tuple[float, float, float]


class TextSize(NamedTuple):
    """What room a text takes, in pixels, and what of it can't be shown."""

    width: float
    height: float
    lines: int
    missing_glyphs: int
