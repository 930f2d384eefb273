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

from typing import TYPE_CHECKING, Any

from ._camera import Camera
from ._engine import Device, Engine, Plugin, can_write, devices, looks
from ._errors import (ArgumentError, ArgumentTypeError, CallbackError, DriverError, EngineError,
                      Error, FileError, ForkError, HandleError, InternalError, LookError,
                      MissingFileError, OutOfMemoryError, ThreadError)
from ._library import version as __version__
from ._model import Material, Mesh, MeshInfo, Model, Pick, Texture
from ._picture import Image, write, write_layers
from ._render import render, stop
from ._view import TextSize, View

if TYPE_CHECKING:
    from ._batch import Verdict, batch


def __getattr__(name: str) -> Any:
    """Fetches what runs other programs when it is asked for: half of the start would go there."""
    if name not in ("Verdict", "batch"):
        raise AttributeError(f"module 'orvex' has no attribute {name!r}")
    from . import _batch
    return getattr(_batch, name)


__all__ = [
    "ArgumentError", "ArgumentTypeError", "CallbackError", "Camera", "Device", "DriverError",
    "Engine", "EngineError", "Error", "FileError", "ForkError", "HandleError", "Image",
    "InternalError", "LookError", "Material", "Mesh", "MeshInfo", "MissingFileError", "Model",
    "OutOfMemoryError", "Pick", "Plugin", "TextSize", "Texture", "ThreadError", "Verdict", "View",
    "__version__", "batch", "can_write", "devices", "looks", "render", "stop", "write",
    "write_layers",
]
