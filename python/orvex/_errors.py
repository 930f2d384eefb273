"""What goes wrong, as exceptions: one for each kind of failure, and one above them all."""

from __future__ import annotations

import os

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Dict, Optional, Type


class Error(Exception):
    """Any failure of this module; its text is a sentence that names what it is about."""


class ArgumentError(Error, ValueError):
    """A number outside its range, an array of another shape, a bad name."""


class ArgumentTypeError(ArgumentError, TypeError):
    """An argument of another type, or an array of another dtype, than is taken there."""


class HandleError(Error, ValueError):
    """Something that was closed, or whose engine was."""


class ThreadError(Error, RuntimeError):
    """An engine, or something of it, was used on another thread than its own."""


class ForkError(Error, RuntimeError):
    """A process was forked off after an engine or a driver had started, and uses one."""


class CallbackError(Error, RuntimeError):
    """A log callback has called back."""


class EngineError(Error, RuntimeError):
    """The engine doesn't start, as when one runs already."""


class DriverError(Error, RuntimeError):
    """There is no driver, or it hasn't got what was asked for."""


class FileError(Error, OSError):
    """A file that can't be read, understood or written; the sentence begins with its name.

    Attributes
    ----------
    filename : str or None
        The file that was asked for.
    """

    def __init__(self, sentence: str, filename: Optional[str] = None) -> None:
        super().__init__(sentence)
        self.filename = filename

    def __str__(self) -> str:
        return str(self.args[0])


class MissingFileError(FileError, FileNotFoundError):
    """A file that isn't there."""


class LookError(Error, ValueError):
    """There is no look of that name, or its program doesn't compile."""


class OutOfMemoryError(Error, MemoryError):
    """There isn't enough memory."""


class InternalError(Error, RuntimeError):
    """A mistake of the library's own."""


_BY_RESULT: Dict[str, Type[Error]] = {
    "ORVEX_ERROR_ARGUMENT": ArgumentError,
    "ORVEX_ERROR_HANDLE": HandleError,
    "ORVEX_ERROR_THREAD": ThreadError,
    "ORVEX_ERROR_FORK": ForkError,
    "ORVEX_ERROR_CALLBACK": CallbackError,
    "ORVEX_ERROR_ENGINE": EngineError,
    "ORVEX_ERROR_DRIVER": DriverError,
    "ORVEX_ERROR_FILE": FileError,
    "ORVEX_ERROR_LOOK": LookError,
    "ORVEX_ERROR_MEMORY": OutOfMemoryError,
    "ORVEX_ERROR_INTERNAL": InternalError,
}


def error_named(result: str, sentence: str) -> Error:
    """The exception for a result of the library, by the result's name; `Error` for a later one."""
    return _BY_RESULT.get(result, Error)(sentence)


def about_file(error: FileError, path: str, is_read: bool) -> FileError:
    """The same failure with the file's name, as one that isn't there if that is why."""
    missing = is_read and not os.path.lexists(path)
    return (MissingFileError if missing else FileError)(str(error), path)
