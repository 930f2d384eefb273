"""Numbers of the caller's, checked so that a mistake names its argument."""

from __future__ import annotations

import math

from ._errors import ArgumentError, ArgumentTypeError

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Iterable, List, Optional, Sequence, Tuple

_INT_MAX = 2**31 - 1


def integer(value: Any, name: str, low: int = 0, high: int = _INT_MAX) -> int:
    """A whole number within a range."""
    try:
        number: int = value.__index__()
    except (AttributeError, TypeError):
        raise ArgumentTypeError(
            f"{name} is a {type(value).__name__}, not a whole number") from None
    if not low <= number <= high:
        raise ArgumentError(f"{name} is {number}, not from {low} to {high}")
    return number


def real(value: Any, name: str) -> float:
    """A finite number."""
    try:
        number = float(value)
    except (TypeError, ValueError):
        raise ArgumentTypeError(f"{name} is a {type(value).__name__}, not a number") from None
    except OverflowError:
        raise ArgumentError(f"{name} is too large a number") from None
    if not math.isfinite(number):
        raise ArgumentError(f"{name} is {number}, not a finite number")
    return number


def size_of(value: Any, name: str = "size") -> Tuple[int, int]:
    """Width and height of a picture."""
    try:
        width, height = value
    except (TypeError, ValueError):
        raise ArgumentTypeError(f"{name} is {value!r}, not (width, height)") from None
    return integer(width, name + "[0]", 1), integer(height, name + "[1]", 1)


def _flat(value: Any) -> Iterable[Any]:
    if hasattr(value, "tolist"):
        value = value.tolist()
    if isinstance(value, (list, tuple)):
        for part in value:
            yield from _flat(part)
    else:
        yield value


def reals(value: Any, count: int, name: str) -> List[float]:
    """So many finite numbers, from a sequence, a nested one or an array."""
    if isinstance(value, (str, bytes)) or not hasattr(value, "__len__"):
        raise ArgumentTypeError(f"{name} is a {type(value).__name__}, not {count} numbers")
    numbers = list(_flat(value))
    if len(numbers) != count:
        raise ArgumentError(f"{name} has {len(numbers)} numbers, not {count}")
    return [real(number, name) for number in numbers]


def choice(value: Any, choices: Sequence[str], name: str) -> int:
    """The place of a word among those that are taken."""
    if value in choices:
        return choices.index(value)
    raise ArgumentError(f"{name} is {value!r}, not one of {', '.join(choices)}")


def color_of(value: Any, name: str, opacity: float = 1.0) -> List[float]:
    """Red, green, blue and opacity, each from 0 to 1, of three numbers or four or "#rrggbb"."""
    if isinstance(value, str):
        return _color_of_word(value, name)
    count = len(value) if hasattr(value, "__len__") else 4
    color = reals(value, 3 if count == 3 else 4, name)
    if not all(0 <= part <= 1 for part in color):
        raise ArgumentError(f"{name} is {tuple(color)}: its numbers go from 0 to 1")
    return color + [opacity] * (4 - len(color))


def _color_of_word(word: str, name: str) -> List[float]:
    digits = {"transparent": "00000000", "black": "000000", "white": "ffffff"}.get(
        word, word[1:] if word.startswith("#") else "")
    parts: Optional[bytes] = None
    if len(digits) in (6, 8):
        try:
            parts = bytes.fromhex(digits)
        except ValueError:
            pass
    if parts is None or " " in digits:
        raise ArgumentError(
            f'{name} is {word!r}, not "#rrggbb", "#rrggbbaa", "transparent", "black" or "white"')
    return [part / 255 for part in parts] + [1.0] * (4 - len(parts))
