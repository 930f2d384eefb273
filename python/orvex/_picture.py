"""Pictures as arrays: shown in notebooks, and written to files."""

from __future__ import annotations

from ._arrays import empty, numpy_here, pixels_of
from ._errors import ArgumentError, FileError, about_file
from ._library import NULL, call, ffi, lib, path_bytes, record, string
from ._numbers import integer

TYPE_CHECKING = False
if TYPE_CHECKING:
    import os
    from typing import Any, Dict, List, Mapping, Optional, Sequence, Tuple, Union

    Path = Union[str, os.PathLike[str]]

_DTYPES = ("uint8", "uint16", "float32", "int32")
_LETTERS = {"depth": "Z", "normal": "XYZ", "position": "XYZ"}


def empty_image(width: int, height: int) -> Any:
    """A new picture of four bytes a pixel."""
    pixels = empty((height, width, 4), "uint8")
    if numpy_here() is None:
        return pixels
    from ._image import Image  # pylint: disable=import-outside-toplevel
    return pixels.view(Image)


def _chunk(kind: bytes, content: bytes) -> bytes:
    import struct  # pylint: disable=import-outside-toplevel
    import zlib  # pylint: disable=import-outside-toplevel
    return (struct.pack(">I", len(content)) + kind + content
            + struct.pack(">I", zlib.crc32(kind + content)))


def png_of(pixels: Any) -> bytes:
    """A picture of three bytes a pixel, or four, as a PNG file in memory."""
    import struct  # pylint: disable=import-outside-toplevel
    import zlib  # pylint: disable=import-outside-toplevel
    view = memoryview(pixels)
    assert view.shape is not None
    height, width, channels = view.shape
    flat, step = view.tobytes(), width * channels
    rows = b"".join(b"\0" + flat[at:at + step] for at in range(0, len(flat), step))
    head = struct.pack(">IIBBBBB", width, height, 8, 6 if channels == 4 else 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", head) + _chunk(b"IDAT", zlib.compress(rows))
            + _chunk(b"IEND", b""))


def beside(frames: Sequence[Any]) -> Any:
    """Pictures of one size side by side."""
    height, width, channels = memoryview(frames[0]).shape or ()
    strip = empty_image(width * len(frames), height)
    if numpy_here() is not None:
        for at, frame in enumerate(frames):
            strip[:, at * width:(at + 1) * width] = frame
        return strip
    flat, step = strip.cast("B"), width * channels
    sources = [frame.cast("B") for frame in frames]
    for row in range(height):
        for at, source in enumerate(sources):
            begin = (row * len(frames) + at) * step
            flat[begin:begin + step] = source[row * step:(row + 1) * step]
    return strip


def write_options(format: Optional[str], quality: int) -> Tuple[Any, Any]:
    """How a picture is written: the library's record, and what has to live beside it."""
    options = record("orvex_write_options")
    named = NULL if format is None else ffi.new("char[]", string(format, "format"))
    options.format = named
    options.jpeg_quality = integer(quality, "quality", 1, 100)
    return options, named


def write(pixels: Any, path: Path, *, format: Optional[str] = None, quality: int = 90) -> None:
    """Writes an array as a picture file, whole or not at all.

    Parameters
    ----------
    pixels : (height, width) or (height, width, 1 to 4) array of uint8, uint16, float32 or int32
        The first row is the one on top. Which dtypes a format holds it tells itself.
    path : str or path
        What stands there is replaced; "-" is standard output.
    format : str, optional
        "png", "jpeg", "npy", "exr", "raw" or "y4m"; by default what the suffix stands for.
    quality : int
        1 to 100, for JPEG.
    """
    picture = record("orvex_picture")
    value, fields = pixels_of(pixels, "pixels", _DTYPES)
    _fill(picture, fields)
    _write(lib.orvex_picture_write, (picture,), path, format, quality)
    del value


def write_layers(layers: Mapping[str, Any], path: Path) -> None:
    """Writes arrays of one size as the layers of one OpenEXR file, by their names.

    That of the name "color" is the one that is shown first.
    """
    if not layers:
        raise ArgumentError("layers is empty")
    pictures = ffi.new("orvex_picture[]", len(layers))
    kept: List[Any] = []
    for picture, (name, pixels) in zip(pictures, layers.items()):
        picture.size = ffi.sizeof("orvex_picture")
        value, fields = pixels_of(pixels, f"layers[{name!r}]", _DTYPES)
        _fill(picture, fields)
        called = ffi.new("char[]", string(name, "a layer's name"))
        letters = ffi.new("char[]", _LETTERS.get(name, "").encode())
        picture.name = NULL if name == "color" else called
        picture.letters = letters if name in _LETTERS else NULL
        kept += [value, called, letters]
    _write(lib.orvex_picture_write_layers, (pictures, len(layers)), path, "exr", 90)


def _fill(picture: Any, fields: Dict[str, Any]) -> None:
    for field, number in fields.items():
        setattr(picture, field, number)


def _write(function: Any, what: Tuple[Any, ...], path: Any, format: Optional[str],
           quality: int) -> None:
    name = path_bytes(path, "path")
    options, kept = write_options(format, quality)
    try:
        call(function, *what, name, options)
    except FileError as error:
        raise about_file(error, name.decode("utf-8", "surrogateescape"), False) from None
    del kept
