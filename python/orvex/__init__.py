"""Pictures of models: from files and arrays to arrays, with no window and no file between.

    import orvex
    image = orvex.render("model.glb", size=(640, 480))      # (480, 640, 4) uint8

Many pictures, on one context::

    with orvex.Engine() as engine, engine.view(640, 480) as view:
        model = engine.load("model.obj")
        view.draw(model, orvex.Camera.orbit(model, azimuth=30))
        depth = view.depth()                                # (480, 640) float32

Arrays are NumPy's where it is installed, and memoryviews with a shape where it isn't. Lengths are
in units of the models, angles in degrees. Every failure is an `orvex.Error`.
"""

from __future__ import annotations

from ._camera import Camera
from ._engine import Engine, can_write, devices, looks
from ._errors import (ArgumentError, ArgumentTypeError, CallbackError, DriverError, EngineError,
                      Error, FileError, ForkError, HandleError, InternalError, LookError,
                      MissingFileError, OutOfMemoryError, ThreadError)
from ._library import version as __version__
from ._model import Mesh, Model
from ._picture import write, write_layers
from ._view import View

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, List

    from ._batch import Verdict, batch
    from ._image import Image
    from ._render import render, stop
    from ._told import Device, Material, MeshInfo, Pick, Plugin, TextSize, Texture

# What most programs do without, and where it is: its start would take as long as all else.
_LATER = {
    "Device": "_told", "Image": "_image", "Material": "_told", "MeshInfo": "_told",
    "Pick": "_told", "Plugin": "_told", "TextSize": "_told", "Texture": "_told",
    "Verdict": "_batch", "batch": "_batch", "render": "_render", "stop": "_render",
}


def __getattr__(name: str) -> Any:
    """Fetches what is left for later when it is asked for."""
    if name not in _LATER:
        raise AttributeError(f"module 'orvex' has no attribute {name!r}")
    import importlib
    place = _LATER[name]
    __import__(f"{__name__}.{place}")
    value = globals()[name] = getattr(globals()[place], name)
    return value


def __dir__() -> List[str]:
    return sorted({*globals(), *_LATER})


__all__ = [
    "ArgumentError", "ArgumentTypeError", "CallbackError", "Camera", "Device", "DriverError",
    "Engine", "EngineError", "Error", "FileError", "ForkError", "HandleError", "Image",
    "InternalError", "LookError", "Material", "Mesh", "MeshInfo", "MissingFileError", "Model",
    "OutOfMemoryError", "Pick", "Plugin", "TextSize", "Texture", "ThreadError", "Verdict", "View",
    "__version__", "batch", "can_write", "devices", "looks", "render", "stop", "write",
    "write_layers",
]
