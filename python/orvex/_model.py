"""Models from files and meshes from arrays, and what they tell of themselves."""

from __future__ import annotations

from ._arrays import Elements, doubles, pixels_of, table
from ._camera import UPS, Camera, handles_of, models_of
from ._errors import ArgumentError, ArgumentTypeError, Error, FileError, about_file
from ._library import NULL, ffi, lib, path_bytes, record, string, text_of
from ._numbers import choice, color_of, integer, reals
from ._picture import beside, png_of
from ._session import Handle

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Iterable, List, Optional, Sequence, Tuple, Union

    import numpy as np
    import numpy.typing as npt

    from ._engine import Engine
    from ._session import Session
    from ._told import Color, Material, MeshInfo, Pick, Texture

    Models = Union["Model", Iterable["Model"]]

NORMALS = ("as given", "file", "smooth", "flat")


def _color(numbers: Any) -> Color:
    return numbers[0], numbers[1], numbers[2], numbers[3]


def pick(session: Session, models: Sequence[Model], origin: Any, direction: Any) -> Optional[Pick]:
    """The first face of models that a ray meets; None where it meets nothing."""
    met = record("orvex_pick")
    session.call(lib.orvex_pick_ray, handles_of(models), len(models),
                 doubles(reals(origin, 3, "origin")), doubles(reals(direction, 3, "direction")),
                 met)
    if not met.hit:
        return None
    from ._told import Pick  # pylint: disable=import-outside-toplevel
    return Pick(models[met.model], met.mesh, met.face, met.object, met.material,
                (met.barycentric[0], met.barycentric[1], met.barycentric[2]), met.distance,
                (met.point[0], met.point[1], met.point[2]))


class Model(Handle):
    """A model from a file, made by `Engine.load`; a `Mesh` is one, too.

    It belongs to its engine, and to the engine's thread.
    """

    _kind = "model"

    def __init__(self, engine: Engine) -> None:
        super().__init__(engine._session, "orvex_model", lib.orvex_model_destroy)
        self._engine = engine

    @classmethod
    def _load(cls, engine: Engine, path: Any, normals: str, allow_outside: bool,
              loader: Optional[str]) -> Model:
        name = path_bytes(path, "path")
        options = record("orvex_model_options")
        options.normals = choice(normals, NORMALS, "normals")
        options.allow_outside = bool(allow_outside)
        told = NULL if loader is None else ffi.new("char[]", string(loader, "loader"))
        options.loader = told
        model = cls(engine)
        try:
            model._session.call(lib.orvex_model_load, engine._handle(), name, options, model._slot)
        except FileError as error:
            raise about_file(error, name.decode("utf-8", "surrogateescape"), True) from None
        return model

    def __enter__(self) -> Model:
        return self

    def __exit__(self, *_exception: Any) -> None:
        self.close()

    def __repr__(self) -> str:
        if self.closed:
            return f"<orvex.{type(self).__name__}, closed>"
        try:
            info = self._info()
        except Error as error:
            return f"<orvex.{type(self).__name__}: {error}>"
        return (f"<orvex.{type(self).__name__} of {info.mesh_count} meshes, "
                f"{info.face_count} faces>")

    def _info(self) -> Any:
        info = record("orvex_model_info")
        self._session.call(lib.orvex_model_get_info, self._handle(), info)
        return info

    def _each(self, function: Any, kind: str, count: int) -> Iterable[Any]:
        for index in range(count):
            info = record(kind)
            self._session.call(function, self._handle(), index, info)
            yield info

    def _texts(self, function: Any, count: int) -> List[str]:
        texts = []
        for index in range(count):
            text = ffi.new("char const**")
            self._session.call(function, self._handle(), index, text)
            texts.append(text_of(text[0]))
        return texts

    @property
    def loader(self) -> str:
        """The name of the plugin that has read it; empty for a mesh."""
        return text_of(self._info().loader)

    @property
    def up(self) -> str:
        """Which axis points up as the model stands: "x", "y", "z", "-x", "-y" or "-z"."""
        return UPS[self._info().up_axis]

    @property
    def vertex_count(self) -> int:
        """Vertices of all meshes."""
        return int(self._info().vertex_count)

    @property
    def face_count(self) -> int:
        """Triangles of all meshes."""
        return int(self._info().face_count)

    @property
    def point_count(self) -> int:
        """Points of clouds, and vertices of meshes without faces."""
        return int(self._info().point_count)

    @property
    def meshes(self) -> List[MeshInfo]:
        """Its meshes. The layer "object" holds their places in this list."""
        from ._told import MeshInfo  # pylint: disable=import-outside-toplevel
        count = self._info().mesh_count
        return [MeshInfo(text_of(info.name), info.vertex_count, info.face_count,
                         (tuple(info.bounds_min), tuple(info.bounds_max)))
                for info in self._each(lib.orvex_model_get_mesh, "orvex_mesh_info", count)]

    @property
    def textures(self) -> List[Texture]:
        """The textures that its materials name, found or not."""
        from ._told import Texture  # pylint: disable=import-outside-toplevel
        count = self._info().texture_count
        return [Texture(text_of(info.name), text_of(info.path), text_of(info.reason), info.width,
                        info.height)
                for info in self._each(lib.orvex_model_get_texture, "orvex_texture_info", count)]

    @property
    def missing(self) -> List[Texture]:
        """The textures that the picture lacks; each has its reason."""
        return [texture for texture in self.textures if texture.reason]

    @property
    def materials(self) -> List[Material]:
        """Its materials. The layer "material" holds their places in this list."""
        from ._told import Material  # pylint: disable=import-outside-toplevel
        textures = self.textures
        count = self._info().material_count
        return [Material(text_of(info.name), _color(info.ambient), _color(info.diffuse),
                         _color(info.specular), info.shininess, info.opacity,
                         tuple(textures[info.textures[at]] for at in range(info.texture_count)))
                for info in self._each(lib.orvex_model_get_material, "orvex_material_info", count)]

    @property
    def notes(self) -> List[str]:
        """Sentences about what is odd, as that no face has an area."""
        return self._texts(lib.orvex_model_get_note, self._info().note_count)

    @property
    def files(self) -> List[str]:
        """What it was read from, or what was looked for: the first is the model's own file."""
        return self._texts(lib.orvex_model_get_file, self._info().file_count)

    @property
    def extent(self) -> npt.NDArray[np.float64]:
        """The box around it as it stands in the world, in its units.

        (2, 3) float64: the least corner and the greatest; NaN around nothing. Looks at every
        vertex.
        """
        made = ffi.new("double[6]")
        self._session.call(lib.orvex_model_get_extent, self._handle(), made, made + 3)
        return table(made, (2, 3))  # type: ignore[no-any-return]

    def set_transform(self, matrix: Any = None) -> None:
        """Places it in the world, whatever it was before.

        Parameters
        ----------
        matrix : (4, 4) array of numbers, optional
            From the model's space to the world, row by row as it is written: the last column is
            the translation, the last row is 0 0 0 1. Without one it is where it was at first.
        """
        numbers = NULL
        if matrix is not None:
            rows = reals(matrix, 16, "matrix")
            numbers = ffi.new("float[16]",
                              [rows[row * 4 + column] for column in range(4) for row in range(4)])
        self._session.call(lib.orvex_model_set_transform, self._handle(), numbers)

    transform = property(None, set_transform, doc="`set_transform` as an assignment.")

    def stand_up(self) -> None:
        """Turns it so that y is its way up, where it wasn't."""
        self._session.call(lib.orvex_model_stand_up, self._handle())

    def pick(self, origin: Any, direction: Any) -> Optional[Pick]:
        """The first face that a ray meets, from either side; None where it meets nothing.

        Both are 3 numbers in the world. The first call looks at every face, later ones at few.
        """
        return pick(self._session, [self], origin, direction)

    def turntable(self, count: int = 6, size: int = 160) -> npt.NDArray[np.uint8]:
        """Pictures all around it, side by side: (size, count * size, 4) uint8."""
        count, size = integer(count, "count", 1, 360), integer(size, "size", 1, 4096)
        with self._engine.view(size, size, background="transparent") as view:
            frames = []
            for at in range(count):
                view.draw(self, Camera.orbit(self, azimuth=25 + 360 * at / count, aim="turn"))
                frames.append(view.color())
        return beside(frames)  # type: ignore[no-any-return]

    def _repr_png_(self) -> Optional[bytes]:
        try:
            return png_of(self.turntable())
        except Error:
            return None


class Mesh(Model):
    """A mesh from arrays, made by `Engine.mesh`: drawn, told of and picked from as any model."""

    _kind = "mesh"

    def __enter__(self) -> Mesh:
        return self

    def update(self, positions: Any = None, faces: Any = None, *, normals: Any = None,
               texcoords: Any = None, colors: Any = None, color: Any = None, texture: Any = None,
               shading: Optional[str] = None) -> None:
        """Gives it other numbers, as `Engine.mesh` takes them. What is None stays as it is.

        Where there are more vertices than before, or fewer, the faces and the numbers of the old
        ones are gone: whatever is to be there has to be given.
        """
        kept, data = _mesh_data(positions, faces, normals, texcoords, colors, color, texture,
                                shading, "")
        self._session.call(lib.orvex_mesh_update, self._handle(), data)
        del kept


_FLOATS = ("float32", "float64")
_INTEGERS = ("uint32", "int64", "int32", "uint16", "uint8")


def _mesh_data(positions: Any, faces: Any, normals: Any, texcoords: Any, colors: Any, color: Any,
               texture: Any, shading: Optional[str], name: str) -> Tuple[List[Any], Any]:
    """The library's record of a mesh, and what has to live while it is read."""
    kept: List[Any] = []
    data = record("orvex_mesh_data")

    def fill(value: Any, field: str, components: Sequence[int], dtypes: Sequence[str] = _FLOATS,
             listed: str = "float32") -> int:
        if value is None:
            return 0
        elements = Elements(value, field, components, dtypes, listed)
        if not elements.count:
            raise ArgumentError(f"{field} is empty")
        elements.fill(getattr(data, field))
        kept.append(elements)
        return elements.count

    counts = {"positions": fill(positions, "positions", (3,)),
              "normals": fill(normals, "normals", (3,)),
              "texcoords": fill(texcoords, "texcoords", (2,)),
              "colors": fill(colors, "colors", (4, 3), _FLOATS + ("uint8",))}
    given = {field: count for field, count in counts.items() if count}
    if len(set(given.values())) > 1:
        raise ArgumentError("arrays of vertices have different lengths: " + ", ".join(
            f"{count} {field}" for field, count in given.items()))
    data.vertex_count = max(counts.values())
    data.face_count = fill(faces, "faces", (3,), _INTEGERS, "uint32")
    data.shading = choice(shading or "as given", NORMALS, "shading")
    if color is not None:
        data.color = color_of(color, "color")
    if texture is not None:
        picture = record("orvex_picture")
        value, fields = pixels_of(texture, "texture", ("uint8",))
        for field, number in fields.items():
            setattr(picture, field, number)
        data.texture = picture
        kept += [value, picture]
    called = ffi.new("char[]", string(name, "name"))
    data.name = called if name else NULL
    kept.append(called)
    return kept, data


def make_mesh(engine: Engine, positions: Any, faces: Any, normals: Any, texcoords: Any,
              colors: Any, color: Any, texture: Any, shading: str, name: str) -> Mesh:
    """What `Engine.mesh` does."""
    if positions is None:
        raise ArgumentTypeError("positions is None, not an array")
    kept, data = _mesh_data(positions, faces, normals, texcoords, colors, color, texture, shading,
                            name)
    mesh = Mesh(engine)
    mesh._session.call(lib.orvex_mesh_create, engine._handle(), data, mesh._slot)
    del kept
    return mesh
