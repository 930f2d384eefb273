"""Cameras: from where models are seen, and how."""

from __future__ import annotations

from ._arrays import doubles, empty, points_of, table
from ._errors import ArgumentError, ArgumentTypeError
from ._library import NULL, call, ffi, lib, record
from ._numbers import choice, real, reals, size_of

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Iterable, List, Optional, Sequence, Tuple, Union

    import numpy as np
    import numpy.typing as npt

    from ._model import Model

    Size = Tuple[int, int]

UPS = ("auto", "x", "y", "z", "-x", "-y", "-z")
AIMS = ("tight", "middle", "turn")


def models_of(models: Any, name: str = "models") -> List[Model]:
    """A list of models from one, or from several."""
    from ._model import Model  # pylint: disable=import-outside-toplevel,cyclic-import
    if isinstance(models, Model):
        return [models]
    try:
        listed = list(models)
    except TypeError:
        raise ArgumentTypeError(
            f"{name} is a {type(models).__name__}, not a model or several") from None
    for at, model in enumerate(listed):
        if not isinstance(model, Model):
            raise ArgumentTypeError(f"{name}[{at}] is a {type(model).__name__}, not a model")
    return listed


def handles_of(models: Sequence[Model]) -> Any:
    """Models as the library takes them."""
    return ffi.new("orvex_model[]", [model._handle() for model in models])


class Camera:
    """From where models are seen, and how. Made by `look_at`, `orbit` or `measured`.

    The world is right-handed. Lengths are in the units of the models, angles in degrees, places in
    pictures in pixels from their upper left corner; pixels have their middles at half integers.
    """

    def __init__(self) -> None:
        raise ArgumentTypeError("cameras are made by Camera.look_at, orbit or measured")

    @classmethod
    def _of(cls, made: Any) -> Camera:
        camera = object.__new__(cls)
        camera._fixed = made
        camera._orbit = None
        camera._models = None
        camera._size = None
        return camera

    _fixed: Any
    _orbit: Any
    _models: Optional[List[Model]]
    _size: Optional[Size]

    @classmethod
    def look_at(cls, eye: Sequence[float], target: Sequence[float],
                up: Optional[Sequence[float]] = None, fov: float = 35.0, *,
                height: Optional[float] = None, near: float = 0.0, far: float = 0.0) -> Camera:
        """Stands at a point and looks at another.

        Parameters
        ----------
        eye, target : 3 numbers
            Where it stands, and what it looks at.
        up : 3 numbers, optional
            What is upward in the picture; y by default.
        fov : float
            Vertical opening in degrees, above 0, below 180.
        height : float, optional
            What the picture shows from its lower to its upper edge: without perspective then.
        near, far : float
            What is nearer or farther along the viewing axis isn't seen. Both 0: right before and
            behind all that is drawn.
        """
        made = record("orvex_camera")
        above = NULL if up is None else doubles(reals(up, 3, "up"))
        call(lib.orvex_camera_look_at, doubles(reals(eye, 3, "eye")),
             doubles(reals(target, 3, "target")), above, _above_0(fov, "fov"), made)
        if height is not None:
            made.lens = lib.ORVEX_LENS_PARALLEL
            made.height = _above_0(height, "height")
        return cls._of(_with_planes(made, near, far))

    @classmethod
    def measured(cls, matrix: Any, pose: Any, *, near: float = 0.0, far: float = 0.0) -> Camera:
        """Stands and sees as a measured camera does.

        Parameters
        ----------
        matrix : (3, 3) array of numbers
            ``[[fx, skew, cx], [0, fy, cy], [0, 0, 1]]`` in pixels of the picture that is drawn.
        pose : (4, 4) array of numbers, or (3, 4)
            From the world to the camera: x to the right, y down, z forward.
        near, far : float
            As for `look_at`.
        """
        count = 12 if len(pose) in (3, 12) else 16
        numbers = reals(pose, count, "pose") + [0.0, 0.0, 0.0, 1.0][:16 - count]
        made = record("orvex_camera")
        call(lib.orvex_camera_measured, doubles(reals(matrix, 9, "matrix")), doubles(numbers), made)
        return cls._of(_with_planes(made, near, far))

    @classmethod
    def orbit(cls, models: Union[Model, Iterable[Model], None] = None, azimuth: float = 25.0,
              elevation: float = 20.0, *, up: str = "auto", aim: str = "tight", zoom: float = 1.0,
              distance: float = 1.0, size: Optional[Size] = None) -> Camera:
        """Looks at models so that all of them are seen.

        How far away that is depends on the picture: the camera stands when a picture is drawn by
        it, and each picture has it stand anew.

        Parameters
        ----------
        models : Model or several, optional
            What is looked at; by default whatever is drawn.
        azimuth : float
            Degrees around the up axis, from the front to the right.
        elevation : float
            Degrees above the horizon.
        up : str
            "auto" (that of the first model), "x", "y", "z", "-x", "-y" or "-z".
        aim : str
            "tight", "middle" (it looks at the middle of their box), or "turn" (the same distance
            for every azimuth, so that a turn doesn't breathe).
        zoom, distance : float
            Magnification, and distance in parts of that of the aim; above 0.
        size : (width, height), optional
            The picture's, for `matrix` and `pose` before one is drawn.
        """
        made = record("orvex_orbit")
        made.azimuth = real(azimuth, "azimuth")
        made.elevation = real(elevation, "elevation")
        made.up = choice(up, UPS, "up")
        made.aim = choice(aim, AIMS, "aim")
        made.zoom = _above_0(zoom, "zoom")
        made.distance = _above_0(distance, "distance")
        camera = cls._of(None)
        camera._orbit = made
        camera._models = None if models is None else models_of(models)
        camera._size = None if size is None else size_of(size)
        return camera

    def at(self, size: Size) -> Camera:
        """The camera as it stands for a picture of that size (width, height)."""
        return Camera._of(self._stand(size_of(size), None))

    def matrix(self, size: Size) -> npt.NDArray[np.float64]:
        """The intrinsics for a picture of that size (width, height).

        Returns
        -------
        (3, 3) float64
            ``[[fx, skew, cx], [0, fy, cy], [0, 0, 1]]`` in pixels. Pixels have their middles at
            half integers, so that cx is half the width.
        """
        size = size_of(size)
        made = ffi.new("double[9]")
        call(lib.orvex_camera_matrix, self._stand(size, None), *size, made)
        return table(made, (3, 3))  # type: ignore[no-any-return]

    @property
    def pose(self) -> npt.NDArray[np.float64]:
        """From the world to the camera: (4, 4) float64; x to the right, y down, z forward.

        For an orbit that of the picture drawn last by it, or of its `size`.
        """
        made = ffi.new("double[16]")
        call(lib.orvex_camera_pose, self._stand(None, None), made)
        return table(made, (4, 4))  # type: ignore[no-any-return]

    def project(self, points: Any, size: Size) -> npt.NDArray[np.float64]:
        """Where points are seen, within the picture or not.

        Parameters
        ----------
        points : (3,) or (n, 3) array of numbers
            In the world.
        size : (width, height)
            Of the picture.

        Returns
        -------
        (3,) or (n, 3) float64
            x and y in pixels, and the depth along the viewing axis; NaN for a point that isn't
            before the eye.
        """
        size = size_of(size)
        numbers, count, shape = points_of(points, "points")
        made = empty(shape or (), "float64")
        if count:
            call(lib.orvex_camera_project, self._stand(size, None), *size, numbers, count,
                 ffi.cast("double*", ffi.from_buffer(made)))
        return made  # type: ignore[no-any-return]

    def ray(self, x: float, y: float,
            size: Size) -> Tuple[npt.NDArray[np.float64], npt.NDArray[np.float64]]:
        """The ray through a place of a picture: its origin and its direction, of length 1.

        Both are (3,) float64 in the world. The middle of the first pixel is at 0.5, 0.5.
        """
        size = size_of(size)
        origin, direction = ffi.new("double[3]"), ffi.new("double[3]")
        call(lib.orvex_camera_ray, self._stand(size, None), *size, real(x, "x"), real(y, "y"),
             origin, direction)
        return table(origin, (3,)), table(direction, (3,))

    def _stand(self, size: Optional[Size], models: Optional[Sequence[Model]]) -> Any:
        """The library's record of it, for a picture of these models."""
        if self._orbit is None:
            return self._fixed
        if models is None and self._fixed is not None and size in (None, self._size):
            return self._fixed
        size = size or self._size
        if size is None:
            raise ArgumentError(
                "an orbit stands for a picture: give orbit() its size, or draw with it before")
        seen = self._models if self._models is not None else models
        if seen is None:
            raise ArgumentError(
                "an orbit stands around models: give them to orbit(), or draw with it before")
        made = record("orvex_camera")
        handles = handles_of(seen)
        if seen:
            seen[0]._session.call(lib.orvex_camera_orbit, handles, len(seen), *size, self._orbit,
                                  made)
        else:
            call(lib.orvex_camera_orbit, handles, 0, *size, self._orbit, made)
        self._fixed, self._size = made, size
        return made


def _above_0(value: Any, name: str) -> float:
    number = real(value, name)
    if number <= 0:
        raise ArgumentError(f"{name} is {number}, not above 0")
    return number


def _with_planes(made: Any, near: float, far: float) -> Any:
    made.near_plane = real(near, "near")
    made.far_plane = real(far, "far")
    if (near or far) and not near < far:
        raise ArgumentError(f"near is {near}, which isn't below far, {far}")
    return made
