"""The engine, and what of the library needs none."""

from __future__ import annotations

import weakref

from ._camera import models_of
from ._errors import ArgumentTypeError, HandleError
from ._library import NULL, call, ffi, lib, path_bytes, record, text_of
from ._model import Model, make_mesh, pick
from ._session import Session
from ._view import View

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Callable, Iterable, List, Optional

    from ._model import Mesh, Models
    from ._picture import Path
    from ._told import Device, Pick, Plugin


def devices() -> List[Device]:
    """The devices of this machine; their places in this list are what `Engine.view` takes.

    Their drivers have started then: a process that is forked off afterwards can't use them. Those
    that are started by "spawn" or "forkserver" can.
    """
    from ._told import Device  # pylint: disable=import-outside-toplevel
    count = ffi.new("size_t*")
    call(lib.orvex_device_count, count)
    found = []
    for index in range(count[0]):
        info = record("orvex_device_info")
        call(lib.orvex_device, index, info)
        found.append(Device(text_of(info.driver), text_of(info.node), text_of(info.pci),
                            text_of(info.refusal), bool(info.software)))
    return found


def looks() -> List[str]:
    """The names of the library's own looks."""
    count, name = ffi.new("size_t*"), ffi.new("char const**")
    call(lib.orvex_look_count, count)
    names = []
    for index in range(count[0]):
        call(lib.orvex_look_name, index, name)
        names.append(text_of(name[0]))
    return names


def can_write(format: str) -> bool:
    """Whether this build writes a format: "png", "jpeg", "npy", "exr", "raw" or "y4m"."""
    can = ffi.new("int32_t*")
    call(lib.orvex_picture_can_write, str(format).encode(), can)
    return bool(can[0])


# What has to be asked to give way before an engine starts: the engine behind `render`.
_before_start: List[Callable[[], None]] = []
_running: List[weakref.ref[Engine]] = []


class Engine:
    """The engine, from its start to its stop. One at a time in a process.

    It belongs to the thread that has made it, and so does all that is made with it.

    Parameters
    ----------
    on_log : callable, optional
        Hears the lines of the engine's log, each a str, on whatever thread they arise. It can't
        call back. What it throws is reported as `sys.unraisablehook` does, and dropped.
    log_file : path, optional
        The log is written to it; it is emptied first.
    debug : bool
        Lets debug lines through, too.
    plugins : paths
        Of loaders that are loaded in any case.
    find_plugins : bool
        Looks for loaders in the folders of ``ORVEX_PLUGIN_PATH`` and beside the library.

    Raises
    ------
    EngineError
        Where one runs already, on whatever thread.
    """

    def __init__(self, on_log: Optional[Callable[[str], Any]] = None, *,
                 log_file: Optional[Path] = None, debug: bool = False,
                 plugins: Iterable[Path] = (), find_plugins: bool = True) -> None:
        if on_log is not None and not callable(on_log):
            raise ArgumentTypeError(f"on_log is a {type(on_log).__name__}, which can't be called")
        for give_way in _before_start:
            give_way()
        self._session = Session(on_log)
        # It is there before the start: a Ctrl-C between the two would have it run for ever.
        self._end = weakref.finalize(self, self._session.stop_quietly)
        options = record("orvex_engine_options")
        names = [ffi.new("char[]", path_bytes(path, "plugins")) for path in plugins]
        listed = ffi.new("char const*[]", names) if names else NULL
        log = NULL if log_file is None else ffi.new("char[]", path_bytes(log_file, "log_file"))
        options.debug_lines, options.skip_plugins = bool(debug), not find_plugins
        options.plugins, options.plugin_count = listed, len(names)
        options.log_file = log
        self._session.start(options)
        _running[:] = [weakref.ref(self)]

    @property
    def closed(self) -> bool:
        """Whether it was stopped."""
        return not self._session.runs

    def _handle(self) -> Any:
        if not self._session.runs:
            raise HandleError("the engine is closed")
        return self._session.slot[0]

    def close(self) -> None:
        """Stops it, after everything that was made with it. A second time nothing happens."""
        self._session.stop()
        self._end.detach()

    def __enter__(self) -> Engine:
        return self

    def __exit__(self, *_exception: Any) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<orvex.Engine, {'closed' if self.closed else 'running'}>"

    @property
    def plugins(self) -> List[Plugin]:
        """The plugins that were named, and then found."""
        from ._told import Plugin  # pylint: disable=import-outside-toplevel
        count = ffi.new("size_t*")
        self._session.call(lib.orvex_engine_plugin_count, self._handle(), count)
        found = []
        for index in range(count[0]):
            info = record("orvex_plugin_info")
            self._session.call(lib.orvex_engine_plugin, self._handle(), index, info)
            found.append(Plugin(text_of(info.path), text_of(info.name), text_of(info.reason)))
        return found

    @property
    def formats(self) -> str:
        """What models can be read from, as "OBJ, 3DS, STL"."""
        told = ffi.new("char const**")
        self._session.call(lib.orvex_engine_formats, self._handle(), told)
        return text_of(told[0])

    def view(self, width: int, height: int, *, samples: Optional[int] = None,
             supersampling: int = 1, path: str = "gl3", surface: str = "off screen",
             device: Optional[str] = None, keep_states: bool = False, look: str = "lit",
             background: Any = None) -> View:
        """Makes a view.

        Parameters
        ----------
        width, height : int
            Pixels, from 1; the driver has a largest size.
        samples : int, optional
            A pixel, against jagged edges; 4 by default, 1 for none.
        supersampling : int
            Pixels drawn for one, across and down, 1 to 8. Slower than samples, and the same on
            every driver.
        path : str
            "gl3" (OpenGL 3.2 core) or "gl2" (OpenGL 2.1).
        surface : str
            "off screen", or "current" for the framebuffer that is bound on the OpenGL context
            that is current.
        device : str, optional
            What draws off screen: a place in `devices()`, a place on the bus, or "software".
        keep_states : bool
            With "current": its states are as they were after each call.
        look : str
            One of `looks()`.
        background : 3 or 4 numbers from 0 to 1, "#rrggbb" or "transparent", optional
            A dark grey by default.

        Raises
        ------
        DriverError
            Where there is no driver, one that is too old, or no surface of that size.
        """
        view = View._make(self, width, height, samples, supersampling, path, surface, device,
                          keep_states)
        if look != "lit":
            view.set_look(look)
        if background is not None:
            view.set_background(background)
        return view

    def load(self, path: Path, *, normals: str = "as given", allow_outside: bool = False,
             loader: Optional[str] = None) -> Model:
        """Loads a file, with the textures that its materials name.

        Parameters
        ----------
        path : str or path
            Of the model.
        normals : str
            "as given" (by the file, else those of the faces), "file", "smooth" or "flat".
        allow_outside : bool
            Textures may lie outside of the model's folder, wherever its file says.
        loader : str, optional
            The name of the plugin; by default whichever reads the file.

        Raises
        ------
        FileError
            Where it can't be read: the sentence begins with its name. A texture that is missing is
            no failure: `Model.missing` tells.
        """
        return Model._load(self, path, normals, allow_outside, loader)

    def mesh(self, positions: Any, faces: Any = None, *, normals: Any = None,
             texcoords: Any = None, colors: Any = None, color: Any = None, texture: Any = None,
             shading: str = "as given", name: str = "") -> Mesh:
        """Makes a mesh of arrays, which are read during the call and not kept.

        Rows may lie apart or backwards, as in a slice; the numbers of a row are side by side.

        Parameters
        ----------
        positions : (n, 3) float32 or float64
            In the mesh's own space.
        faces : (m, 3) uint8, uint16, uint32, int32 or int64, optional
            Vertices from 0, counterclockwise as seen from outside. Without them every three
            vertices are a face.
        normals : (n, 3) float32 or float64, optional
            Of any length. Without them those of `shading`.
        texcoords : (n, 2) float32 or float64, optional
        colors : (n, 3) or (n, 4) float32, float64 (0 to 1) or uint8 (0 to 255), optional
        color : 3 or 4 numbers from 0 to 1, or "#rrggbb", optional
            Of all; with an opacity below 1 it is blended.
        texture : (height, width, 1 to 4) uint8, optional
        shading : str
            "as given", "file", "smooth" or "flat": where normals come from.
        name : str
            Of the mesh.
        """
        return make_mesh(self, positions, faces, normals, texcoords, colors, color, texture,
                         shading, name)

    def pick(self, models: Models, origin: Any, direction: Any) -> Optional[Pick]:
        """The first face of models that a ray meets; None where it meets nothing.

        `origin` and `direction` are 3 numbers in the world.
        """
        self._handle()
        return pick(self._session, models_of(models), origin, direction)


def running_here() -> Optional[Engine]:
    """The engine of this thread, if one runs that somebody still holds."""
    engine = _running[0]() if _running else None
    return engine if engine is not None and not engine.closed and engine._session.is_here else None
