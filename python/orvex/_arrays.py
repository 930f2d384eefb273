"""Arrays: NumPy's where it is installed, memoryviews with a shape where it isn't."""

from __future__ import annotations

import sys

from ._errors import ArgumentError, ArgumentTypeError
from ._library import NULL, ffi
from ._numbers import real

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Dict, List, Optional, Sequence, Tuple

    Shape = Tuple[int, ...]

# The letters of struct, by the names of NumPy and with the bytes of each.
_LETTERS = {"uint8": ("B", 1), "int32": ("i", 4), "float32": ("f", 4), "float64": ("d", 8)}
_TYPE_OF_LETTER = {
    "B": "uint8", "b": "int8", "H": "uint16", "h": "int16", "I": "uint32", "i": "int32",
    "L": "uint64", "l": "int64", "Q": "uint64", "q": "int64", "f": "float32", "d": "float64",
    "e": "float16", "?": "bool", "g": "longdouble",
}
# Of those, what the library knows, by its number.
_TYPES = {"uint8": 1, "uint16": 2, "uint32": 3, "int32": 4, "int64": 5, "float32": 6, "float64": 7}


def numpy_here() -> Any:
    """NumPy, or None where it isn't installed.

    Importing it takes as long as a small picture: it waits until an array goes in or out.
    """
    try:
        import numpy  # pylint: disable=import-outside-toplevel
    except ImportError:
        return None
    return numpy


def _is_ndarray(value: Any) -> bool:
    # Whoever has made one has imported what it takes.
    kind = getattr(sys.modules.get("numpy"), "ndarray", None)
    return kind is not None and isinstance(value, kind)


def _is_array(value: Any) -> bool:
    import array  # pylint: disable=import-outside-toplevel
    return hasattr(value, "__array_interface__") or isinstance(
        value, (memoryview, array.array, bytes, bytearray))


def empty(shape: Shape, dtype: str) -> Any:
    """A new array, for a call to write into: an `ndarray` or a writable `memoryview`."""
    numpy = numpy_here()
    if numpy is not None:
        return numpy.empty(shape, dtype)
    letter, size = _LETTERS[dtype]
    count = size
    for length in shape:
        count *= length
    return memoryview(bytearray(count)).cast(letter, shape)


def view_of(value: Any, name: str) -> memoryview:
    """The memory of an array."""
    try:
        return memoryview(value)
    except (TypeError, ValueError):
        raise ArgumentTypeError(f"{name} is a {type(value).__name__}, not an array") from None


def dtype_of(view: memoryview) -> str:
    """The dtype of memory, by NumPy's name; what isn't known or of another byte order, as it stands."""
    letter = view.format.lstrip("@=<")
    if letter in "lL" and view.itemsize == 4:
        letter = {"l": "i", "L": "I"}[letter]
    return _TYPE_OF_LETTER.get(letter, repr(view.format))


def address_of(value: Any, view: memoryview, name: str) -> Any:
    """Where an array begins. It has to live on by itself."""
    if _is_ndarray(value):
        return ffi.cast("char*", value.__array_interface__["data"][0])
    if not view.c_contiguous:
        raise ArgumentError(f"{name} isn't contiguous: strides {view.strides}, shape {view.shape}")
    return ffi.from_buffer(value)


def rows_of(value: Any, name: str, shape: Shape, dtype: str) -> Tuple[Any, int]:
    """Where the pixels of an array to be written into begin, and the bytes from row to row.

    Its rows may have gaps between them, or lie upside down; the numbers of a row are side by side.
    """
    view = view_of(value, name)
    if dtype_of(view) != dtype:
        raise ArgumentTypeError(f"{name} has dtype {dtype_of(view)}, not {dtype}")
    if view.shape != shape:
        raise ArgumentError(f"{name} has shape {view.shape}, not {shape}")
    if view.readonly:
        raise ArgumentError(f"{name} is read-only")
    wanted = _tight_strides(shape, view.itemsize)
    assert view.strides is not None
    if shape[1] > 1 and view.strides[1:] != wanted[1:]:
        raise ArgumentError(
            f"{name} has strides {view.strides}: the pixels of a row aren't side by side")
    stride = view.strides[0] if shape[0] > 1 else wanted[0]
    if abs(stride) < wanted[0]:
        raise ArgumentError(f"{name} has strides {view.strides}: its rows lie in each other")
    return address_of(value, view, name), stride


def _tight_strides(shape: Shape, itemsize: int) -> Shape:
    strides: List[int] = []
    step = itemsize
    for length in reversed(shape):
        strides.insert(0, step)
        step *= length
    return tuple(strides)


def _listed(value: Any, dtype: str, name: str) -> Any:
    """An array made of a list; arrays of other makers as NumPy takes them."""
    import array  # pylint: disable=import-outside-toplevel
    numpy = numpy_here()
    if numpy is not None:
        try:
            if isinstance(value, (list, tuple)):
                return numpy.asarray(value, dtype)
            return numpy.asarray(value)
        except (TypeError, ValueError, OverflowError) as error:
            raise ArgumentTypeError(f"{name} makes no array: {error}") from None
    if not isinstance(value, (list, tuple)):
        raise ArgumentTypeError(f"{name} is a {type(value).__name__}, not an array")
    rows = [row if isinstance(row, (list, tuple)) else [row] for row in value]
    if len({len(row) for row in rows}) > 1:
        raise ArgumentError(f"{name} has rows of different lengths")
    letter = {"uint32": "I"}.get(dtype) or _LETTERS[dtype][0]
    try:
        flat = array.array(letter, [part for row in rows for part in row])
    except (TypeError, OverflowError) as error:
        raise ArgumentTypeError(f"{name} makes no array: {error}") from None
    shape = (len(rows), len(rows[0]) if rows else 0)
    return memoryview(flat).cast("B").cast(letter, shape) if rows else flat


class Elements:
    """An array of the caller's as the library reads it: so many elements of some numbers each."""

    def __init__(self, value: Any, name: str, components: Sequence[int], dtypes: Sequence[str],
                 listed: str) -> None:
        self.name = name
        self.value = value if _is_array(value) else _listed(value, listed, name)
        view = view_of(self.value, name)
        self.dtype = dtype_of(view)
        if self.dtype not in dtypes:
            raise ArgumentTypeError(
                f"{name} has dtype {self.dtype}, not {' or '.join(dtypes)}")
        self.count, self.components = self._count_of(view, components)
        self.stride = self._stride_of(view)
        self.address = address_of(self.value, view, name) if self.count else NULL

    def _count_of(self, view: memoryview, components: Sequence[int]) -> Tuple[int, int]:
        shape = view.shape
        assert shape is not None
        if len(shape) == 2 and shape[1] in components:
            return shape[0], shape[1]
        # Arrays of the standard library have no rows.
        is_plain = not hasattr(self.value, "__array_interface__")
        if len(shape) == 1 and is_plain and shape[0] % components[0] == 0:
            return shape[0] // components[0], components[0]
        wanted = " or ".join(f"(n, {number})" for number in components)
        raise ArgumentError(f"{self.name} has shape {shape}, not {wanted}")

    def _stride_of(self, view: memoryview) -> int:
        tight = self.components * view.itemsize
        if view.ndim == 1 or self.count == 0:
            return tight
        assert view.strides is not None
        if view.strides[1] != view.itemsize:
            raise ArgumentError(f"{self.name} has strides {view.strides}: "
                                "the numbers of a row aren't side by side")
        return view.strides[0] if self.count > 1 else tight

    def fill(self, target: Any) -> None:
        """Fills in the library's record of it."""
        target.data = self.address
        target.type = _TYPES[self.dtype]
        target.components = self.components
        target.stride = self.stride


def doubles(values: Sequence[float]) -> Any:
    """Numbers as the library takes them."""
    return ffi.new("double[]", values)


def table(values: Any, shape: Shape) -> Any:
    """An array of float64 with numbers of the library's."""
    made = empty(shape, "float64")
    count = 1
    for length in shape:
        count *= length
    ffi.memmove(made, ffi.buffer(values, count * 8), count * 8)
    return made


def pixels_of(value: Any, name: str, dtypes: Sequence[str]) -> Tuple[Any, Dict[str, Any]]:
    """A picture of the caller's: what has to live during the call, and the fields of its record."""
    if not isinstance(value, memoryview) and not hasattr(value, "__array_interface__"):
        value = _listed(value, "uint8", name)
    view = view_of(value, name)
    dtype = dtype_of(view)
    if dtype not in dtypes:
        raise ArgumentTypeError(f"{name} has dtype {dtype}, not {' or '.join(dtypes)}")
    shape = view.shape
    if shape is None or not (len(shape) == 2 or (len(shape) == 3 and 1 <= shape[2] <= 4)):
        raise ArgumentError(f"{name} has shape {shape}, not (height, width) or "
                            "(height, width, 1 to 4)")
    if 0 in shape or max(shape[:2]) > 65535:
        raise ArgumentError(f"{name} has shape {shape}: sides go from 1 to 65535")
    tight = _tight_strides(shape, view.itemsize)
    assert view.strides is not None
    if view.strides[1:] != tight[1:] and shape[1] > 1:
        raise ArgumentError(
            f"{name} has strides {view.strides}: the pixels of a row aren't side by side")
    return value, {
        "width": shape[1], "height": shape[0], "channels": shape[2] if len(shape) == 3 else 1,
        "type": _TYPES[dtype], "rows": address_of(value, view, name),
        "row_bytes": view.strides[0] if shape[0] > 1 else tight[0],
    }


def points_of(value: Any, name: str) -> Tuple[Any, int, Optional[Shape]]:
    """Points in space as doubles: their numbers, how many there are, and the shape they came in."""
    numpy = numpy_here()
    if numpy is not None:
        try:
            points = numpy.ascontiguousarray(value, "float64")
        except (TypeError, ValueError):
            raise ArgumentTypeError(f"{name} makes no array of numbers") from None
        if points.ndim not in (1, 2) or points.shape[-1] != 3:
            raise ArgumentError(f"{name} has shape {points.shape}, not (3,) or (n, 3)")
        return ffi.from_buffer("double[]", points), points.size // 3, points.shape
    rows = value.tolist() if hasattr(value, "tolist") else list(value)
    is_one = bool(rows) and not isinstance(rows[0], (list, tuple))
    rows = [rows] if is_one else rows
    if any(len(row) != 3 for row in rows):
        raise ArgumentError(f"{name} isn't (3,) or (n, 3)")
    flat = [real(number, name) for row in rows for number in row]
    return doubles(flat), len(rows), (3,) if is_one else (len(rows), 3)
