"""Views: where models are drawn, and what is read from them."""

from __future__ import annotations

from ._arrays import empty, rows_of
from ._camera import Camera, handles_of, models_of
from ._errors import ArgumentError, ArgumentTypeError, FileError, about_file
from ._library import NULL, ffi, lib, path_bytes, record, string, text_of
from ._model import pick
from ._numbers import choice, color_of, integer, real
from ._picture import empty_image, png_of, write_options
from ._session import Handle

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Dict, List, Optional, Tuple

    import numpy as np
    import numpy.typing as npt

    from ._engine import Engine
    from ._image import Image
    from ._model import Model, Models
    from ._picture import Path
    from ._told import Pick, TextSize

PATHS = ("gl3", "gl2")
SURFACES = ("off screen", "current")
SPACES = ("world", "camera")
ALIGNS = ("left", "center", "right")

# The library's layers by their names here, with what a pixel is made of.
_LAYERS = {
    "color": (0, (4,), "uint8"),
    "depth": (1, (), "float32"),
    "normal": (2, (3,), "float32"),
    "position": (3, (3,), "float32"),
    "object": (4, (), "int32"),
    "id": (4, (), "int32"),
    "material": (5, (), "int32"),
    "face": (6, (), "int32"),
}
LAYERS = tuple(_LAYERS)


def layer_names(layers: Any) -> List[str]:
    """Names of layers, from one or several."""
    names = [layers] if isinstance(layers, str) else list(layers)
    for name in names:
        if name not in _LAYERS:
            raise ArgumentError(f"layers: there is no {name!r}, only {', '.join(LAYERS)}")
    return names


class _Text(Handle):
    """A font of a view's. It ends with the view."""

    _kind = "text"


class View(Handle):
    """Where models are drawn, made by `Engine.view`. It belongs to its engine's thread."""

    _kind = "view"

    def __init__(self, engine: Engine) -> None:
        super().__init__(engine._session, "orvex_view", lib.orvex_view_destroy)
        self._engine = engine
        self._size = (0, 0)
        self._models: Optional[List[Model]] = None
        self._camera: Any = None
        self._texts: Dict[Optional[bytes], _Text] = {}

    @classmethod
    def _make(cls, engine: Engine, width: int, height: int, samples: Optional[int],
              supersampling: int, path: str, surface: str, device: Optional[str],
              keep_states: bool) -> View:
        options = record("orvex_view_options")
        options.samples = 0 if samples is None else integer(samples, "samples", 1)
        options.supersampling = integer(supersampling, "supersampling", 1, 8)
        options.path = choice(path, PATHS, "path")
        options.surface = choice(surface, SURFACES, "surface")
        options.keep_states = bool(keep_states)
        told = NULL if device is None else ffi.new("char[]", string(str(device), "device"))
        options.device = told
        view = cls(engine)
        size = integer(width, "width", 1), integer(height, "height", 1)
        view._session.call(lib.orvex_view_create, engine._handle(), *size, options, view._slot)
        view._size = size
        return view

    def __enter__(self) -> View:
        return self

    def __exit__(self, *_exception: Any) -> None:
        self.close()

    def __repr__(self) -> str:
        width, height = self._size
        return f"<orvex.View, {'closed' if self.closed else f'{width}x{height}'}>"

    def close(self) -> None:
        """Ends it, and its context unless that is the host's. Models live on."""
        super().close()
        self._models = self._camera = None
        self._texts.clear()

    def _info(self) -> Any:
        info = record("orvex_view_info")
        self._session.call(lib.orvex_view_get_info, self._handle(), info)
        return info

    @property
    def size(self) -> Tuple[int, int]:
        """Width and height in pixels."""
        return self._size

    @property
    def samples(self) -> int:
        """Samples a pixel, as many as there are; 1 without."""
        return int(self._info().samples)

    @property
    def driver(self) -> str:
        """What draws, as OpenGL names it."""
        return text_of(self._info().driver)

    def resize(self, width: int, height: int) -> None:
        """Takes another size, and loses what was drawn."""
        size = integer(width, "width", 1), integer(height, "height", 1)
        self._session.call(lib.orvex_view_resize, self._handle(), *size)
        self._size = size
        self._models = self._camera = None

    def set_background(self, color: Any) -> None:
        """What lies behind the models: 3 or 4 numbers from 0 to 1, "#rrggbb" or "transparent"."""
        numbers = ffi.new("float[4]", color_of(color, "background"))
        self._session.call(lib.orvex_view_set_background, self._handle(), numbers)

    background = property(None, set_background, doc="`set_background` as an assignment.")

    def set_look(self, name: Optional[str] = None, *, file: Any = None,
                 source: Optional[str] = None) -> None:
        """Has models look otherwise.

        Parameters
        ----------
        name : str
            One of `orvex.looks()`.
        file, source : path or str
            Or a program of your own, as the guide's page on looks tells: its file, or its text.
        """
        if sum(given is not None for given in (name, file, source)) != 1:
            raise ArgumentError("a look is a name, a file or a source: one of them")
        if name is not None:
            self._session.call(lib.orvex_view_set_look, self._handle(), string(name, "look"))
            return
        if source is not None:
            self._session.call(lib.orvex_view_set_look_source, self._handle(), NULL,
                               string(source, "source"))
            return
        path = path_bytes(file, "file")
        try:
            self._session.call(lib.orvex_view_set_look_source, self._handle(), path, NULL)
        except FileError as error:
            raise about_file(error, path.decode("utf-8", "surrogateescape"), True) from None

    look = property(None, set_look, doc="`set_look` by a name, as an assignment.")

    def _scene(self, models: Models, camera: Optional[Camera]) -> Tuple[List[Model], Any]:
        drawn = models_of(models)
        if camera is None:
            camera = Camera.orbit()
        if not isinstance(camera, Camera):
            raise ArgumentTypeError(f"camera is a {type(camera).__name__}, not a Camera")
        return drawn, camera._stand(self._size, drawn)

    def draw(self, models: Models, camera: Optional[Camera] = None) -> None:
        """Draws a frame, which stays until the next one.

        Parameters
        ----------
        models : Model or several
            Drawn in their order.
        camera : Camera, optional
            By default one that sees all of them, a little from the right and from above.
        """
        handle = self._handle()
        drawn, made = self._scene(models, camera)
        self._session.call(lib.orvex_view_draw, handle, made, handles_of(drawn), len(drawn))
        self._models, self._camera = drawn, made

    def color(self, out: Any = None) -> Image:
        """The picture that was drawn, with its texts.

        Parameters
        ----------
        out : (height, width, 4) uint8 array, optional
            To be read into, and returned; its rows may have gaps between them. By default a new
            one. The library writes into it straight: nothing is copied.

        Returns
        -------
        (height, width, 4) uint8
            Red, green, blue and straight alpha, from the upper row on.
        """
        handle = self._handle()
        width, height = self._size
        if out is None:
            out = empty_image(width, height)
            rows, stride = ffi.from_buffer(out), 0
        else:
            rows, stride = rows_of(out, "out", (height, width, 4), "uint8")
        self._session.call(lib.orvex_view_read, handle, rows, stride)
        return out  # type: ignore[no-any-return]

    def depth(self, out: Any = None) -> npt.NDArray[np.float32]:
        """(height, width) float32: along the viewing axis, in units of the models; infinity where
        nothing is."""
        return self._layer("depth", out)  # type: ignore[no-any-return]

    def normal(self, out: Any = None, *, space: str = "world") -> npt.NDArray[np.float32]:
        """(height, width, 3) float32: of length 1, on the side that is seen; 0 where nothing is."""
        return self._layer("normal", out, space)  # type: ignore[no-any-return]

    def position(self, out: Any = None, *, space: str = "world") -> npt.NDArray[np.float32]:
        """(height, width, 3) float32: in units of the models; NaN where nothing is."""
        return self._layer("position", out, space)  # type: ignore[no-any-return]

    def object(self, out: Any = None) -> npt.NDArray[np.int32]:
        """(height, width) int32: the mesh, as `Model.meshes` counts and on from one model to the
        next; -1 where nothing is."""
        return self._layer("object", out)  # type: ignore[no-any-return]

    def material(self, out: Any = None) -> npt.NDArray[np.int32]:
        """(height, width) int32: as `Model.materials` counts and on from one model to the next; -1
        where nothing is, and for a face without one."""
        return self._layer("material", out)  # type: ignore[no-any-return]

    def face(self, out: Any = None) -> npt.NDArray[np.int32]:
        """(height, width) int32: the triangle, in its mesh; -1 where nothing is."""
        return self._layer("face", out)  # type: ignore[no-any-return]

    def _layer(self, name: str, out: Any, space: str = "world") -> Any:
        return self.layers(name, out=None if out is None else {name: out}, space=space)[name]

    def layers(self, *names: Any, out: Optional[Dict[str, Any]] = None,
               space: str = "world") -> Dict[str, Any]:
        """Several layers of what was drawn last, at once.

        All but the colours come from one sample in the middle of each pixel. They are drawn for
        this call: models that were moved since `draw` are where they are now.

        Parameters
        ----------
        *names : str, or sequences of them
            Some of "color", "depth", "normal", "position", "object" (or "id", which is the same),
            "material" and "face".
        out : dict of arrays by name, optional
            To be read into, as for `color`.
        space : str
            "world", or "camera" for normals and positions in the space of `Camera.pose`.

        Returns
        -------
        dict of arrays by name
            As the operations of these names return.
        """
        wanted = [name for part in names for name in layer_names(part)]
        handle = self._handle()
        if self._models is None:
            raise ArgumentError("nothing was drawn yet: layers are those of a frame")
        given = out or {}
        stranger = next((name for name in given if name not in wanted), None)
        if stranger is not None:
            raise ArgumentError(f"out[{stranger!r}]: the layer isn't asked for")
        made: Dict[str, Any] = {}
        planes = ffi.new("orvex_plane[]", len(wanted))
        count = 0
        for name in wanted:
            if name == "color":
                made[name] = self.color(given.get(name))
            elif name not in made:
                made[name] = self._plane(planes[count], name, given.get(name))
                count += 1
        if count:
            self._draw_planes(handle, planes, count, space)
        return made

    def _plane(self, plane: Any, name: str, out: Any) -> Any:
        width, height = self._size
        number, channels, dtype = _LAYERS[name]
        plane.layer = number
        shape = (height, width) + channels
        if out is None:
            out = empty(shape, dtype)
            plane.rows = ffi.from_buffer(out)
        else:
            plane.rows, plane.row_bytes = rows_of(out, f"out[{name!r}]", shape, dtype)
        return out

    def _draw_planes(self, handle: Any, planes: Any, count: int, space: str) -> None:
        assert self._models is not None
        options = record("orvex_layer_options")
        options.space = choice(space, SPACES, "space")
        self._session.call(lib.orvex_view_draw_layers, handle, self._camera,
                           handles_of(self._models), len(self._models), planes, count, options)

    def pick(self, x: float, y: float) -> Optional[Pick]:
        """The face that is seen at a place of the picture drawn last; None for the background.

        The middle of the first pixel is at 0.5, 0.5.
        """
        self._handle()
        if self._models is None:
            raise ArgumentError("nothing was drawn yet: there is nothing to pick from")
        if not self._models:
            return None
        origin, direction = Camera._of(self._camera).ray(x, y, self._size)
        return pick(self._session, self._models, origin, direction)

    def _text(self, font: Any) -> Any:
        path = None if font is None else path_bytes(font, "font")
        if path not in self._texts:
            text = _Text(self._session, "orvex_text", lib.orvex_text_destroy)
            try:
                self._session.call(lib.orvex_text_create, self._handle(), path or NULL, text._slot)
            except FileError as error:
                assert path is not None
                raise about_file(error, path.decode("utf-8", "surrogateescape"), True) from None
            self._texts[path] = text
        return self._texts[path]._handle()

    def text(self, words: str, x: float, y: float, *, height: float = 24.0, color: Any = "white",
             align: str = "left", wrap: float = 0.0, spacing: float = 1.0, font: Any = None) -> None:
        """Writes over the picture that was drawn.

        Parameters
        ----------
        words : str
            A line feed begins a line.
        x, y : float
            The upper left corner of its room, in pixels from that of the picture.
        height : float
            Of a line, in pixels.
        color : 3 or 4 numbers from 0 to 1, or "#rrggbb"
        align : str
            "left", "center" or "right".
        wrap : float
            Where longer lines break, in pixels; 0 for nowhere.
        spacing : float
            From line to line, in heights of a line.
        font : path, optional
            A BMFont XML file with its sheet beside it; by default DejaVu Sans.
        """
        handle = self._handle() and self._text(font)
        style = _style(height, color, align, wrap, spacing)
        self._session.call(lib.orvex_text_add, handle, string(words, "words"), real(x, "x"),
                           real(y, "y"), style)
        self._session.call(lib.orvex_text_draw, handle)

    def measure_text(self, words: str, *, height: float = 24.0, align: str = "left",
                     wrap: float = 0.0, spacing: float = 1.0, font: Any = None) -> TextSize:
        """What room a text takes; arguments as for `text`."""
        from ._told import TextSize  # pylint: disable=import-outside-toplevel
        handle = self._handle() and self._text(font)
        extent = record("orvex_text_extent")
        self._session.call(lib.orvex_text_measure, handle, string(words, "words"),
                           _style(height, "white", align, wrap, spacing), extent)
        return TextSize(extent.width, extent.height, extent.line_count, extent.missing_glyphs)

    def save(self, path: Path, *, format: Optional[str] = None, quality: int = 90) -> None:
        """Writes the picture that was drawn to a file, whole or not at all, as `orvex.write` does.

        Without alpha where the background is opaque.
        """
        handle = self._handle()
        name = path_bytes(path, "path")
        options, kept = write_options(format, quality)
        try:
            self._session.call(lib.orvex_view_write, handle, name, options)
        except FileError as error:
            raise about_file(error, name.decode("utf-8", "surrogateescape"), False) from None
        del kept

    def _repr_png_(self) -> Optional[bytes]:
        return None if self.closed or self._models is None else png_of(self.color())


def _style(height: float, color: Any, align: str, wrap: float, spacing: float) -> Any:
    style = record("orvex_text_style")
    style.line_height = real(height, "height")
    style.color = color_of(color, "color")
    style.align = choice(align, ALIGNS, "align")
    style.wrap_width = real(wrap, "wrap")
    style.line_spacing = real(spacing, "spacing")
    return style
