"""The C library: where it is, and how it is called."""

from __future__ import annotations

import os

from ._declarations import ffi as ffi
from ._errors import ArgumentError, ArgumentTypeError, error_named

TYPE_CHECKING = False
if TYPE_CHECKING:
    from threading import local as local
    from typing import Any, Callable, List
else:
    try:  # where threading has it from: a program that draws on one thread starts without the rest
        from _thread import _local as local
    except ImportError:
        from threading import local

_NAME = "liborvex_c.so.0"


def _places() -> List[str]:
    """Where the library may lie: as the environment says, beside this file, where the system looks."""
    told = os.environ.get("ORVEX_LIBRARY")
    if told:
        return [told]
    own = os.path.join(os.path.dirname(os.path.abspath(__file__)), "lib", _NAME)
    return [own, _NAME] if os.path.exists(own) else [_NAME]


def _load() -> Any:
    reasons = []
    for place in _places():
        try:
            return ffi.dlopen(place)
        except OSError as error:
            reasons.append(str(error))
    raise ImportError("orvex can't load its library: " + "; ".join(reasons))


lib: Any = _load()
NULL: Any = ffi.NULL


class _Guard(local):
    """Whether this thread is within a call, or about to ask why one failed."""

    busy = False


guard = _Guard()


def text_of(pointer: Any) -> str:
    """A string of the library's; bytes that are no UTF-8 come back as they are told by `os`."""
    return str(ffi.string(pointer), "utf-8", "surrogateescape") if pointer else ""


def call(function: Callable[..., int], *arguments: Any) -> None:
    """Calls an operation, without the lock of the interpreter, and raises what it answers.

    What the garbage collector finds meanwhile has to wait: its ends are calls, too, and the
    sentence of a failure holds until the next call only.
    """
    was_busy = guard.busy
    try:
        guard.busy = True
        result = function(*arguments)
        if result:
            name = text_of(lib.orvex_result_name(result))
            raise error_named(name, text_of(lib.orvex_last_error()))
    finally:
        guard.busy = was_busy


def record(kind: str) -> Any:
    """A record of the library's, all 0 but for its size."""
    made = ffi.new(kind + "*")
    made.size = ffi.sizeof(kind)
    return made


def string(value: str, name: str) -> bytes:
    """A text as the library takes it."""
    if not isinstance(value, str):
        raise ArgumentTypeError(f"{name} is a {type(value).__name__}, not a str")
    try:
        encoded = value.encode("utf-8", "surrogateescape")
    except UnicodeEncodeError as error:
        raise ArgumentError(f"{name} can't be written as UTF-8: {error}") from None
    if b"\0" in encoded:
        raise ArgumentError(f"{name} has a null character in it")
    return encoded


def path_bytes(value: Any, name: str) -> bytes:
    """The name of a file as the library takes it."""
    try:
        encoded = os.fsencode(value)
    except TypeError:
        raise ArgumentTypeError(
            f"{name} is a {type(value).__name__}, not a str or a path") from None
    except UnicodeEncodeError as error:
        raise ArgumentError(f"{name} is no name of a file: {error}") from None
    if b"\0" in encoded:
        raise ArgumentError(f"{name} has a null character in it")
    return encoded


version: str = text_of(lib.orvex_version())
