"""The module as a whole: its declarations, its types, and life without NumPy."""

import os
import pathlib
import pickle
import re
import shutil
import subprocess
import sys
import unittest

import numpy

import orvex
from orvex import _library
from support import LIGHTHOUSE, TOP, FolderTest, run_python

sys.path.insert(0, str(TOP / "python"))
import declare  # noqa: E402  pylint: disable=wrong-import-position

HEADER = (TOP / "src" / "orvex_c" / "orvex.h").read_text()


class DeclarationTest(FolderTest):
    """What the module knows of the library, against the library's header."""

    def test_declarations_are_those_of_the_header(self):
        declare.write(str(TOP / "src" / "orvex_c" / "orvex.h"), str(self.folder / "made.py"))
        used = pathlib.Path(orvex.__file__).with_name("_declarations.py")
        self.assertEqual(used.read_text(), (self.folder / "made.py").read_text())

    def test_the_library_has_each_operation_of_the_header(self):
        functions = declare.functions_of(declare.declarations_of(HEADER))
        self.assertEqual(len(functions), HEADER.count("ORVEX_C_API ") - 1, "with the define")
        for name in functions:
            self.assertTrue(callable(getattr(_library.lib, name)), name)

    def test_the_module_uses_each_operation_of_the_header(self):
        folder = pathlib.Path(orvex.__file__).parent
        used = {name for path in folder.glob("*.py") if path.name != "_declarations.py"
                for name in re.findall(r"lib\.(orvex_\w+)", path.read_text())}
        # Cameras have their planes in their records; layers have their names in the module.
        left = {"orvex_camera_fit", "orvex_layer_get_info", "orvex_layer_named"}
        functions = set(declare.functions_of(declare.declarations_of(HEADER)))
        self.assertEqual(functions - used, left)

    def test_layers_are_those_of_the_library(self):
        from orvex import _view  # pylint: disable=import-outside-toplevel
        lib, info = _library.lib, _library.record("orvex_layer_info")
        for name, (number, channels, _) in _view._LAYERS.items():
            _library.call(lib.orvex_layer_get_info, number, info)
            self.assertEqual(info.channels, (channels or (1,))[0], name)
            self.assertEqual(_library.text_of(info.name), "object" if name == "id" else name)

    def test_each_result_has_its_exception(self):
        for number in range(1, 12):
            name = _library.text_of(_library.lib.orvex_result_name(number))
            error = orvex._errors.error_named(name, "a sentence")
            self.assertIsNot(type(error), orvex.Error, name)
            self.assertEqual(str(error), "a sentence")
        self.assertIs(type(orvex._errors.error_named("unknown", "")), orvex.Error)

    def test_version(self):
        told = re.search(r"project\(orvex VERSION (\S+)", (TOP / "CMakeLists.txt").read_text())
        self.assertEqual(orvex.__version__, told.group(1))


class TypeTest(FolderTest):
    """Hints."""

    @unittest.skipUnless(shutil.which("mypy"), "mypy isn't installed")
    def test_mypy_finds_nothing(self):
        checked = subprocess.run(
            ["mypy", "--config-file", str(TOP / "python" / "pyproject.toml"),
             "--cache-dir", os.environ.get("ORVEX_MYPY_CACHE", str(self.folder)), "-p", "orvex"],
            cwd=pathlib.Path(orvex.__file__).parent.parent, capture_output=True, text=True,
            check=False)
        self.assertEqual(checked.returncode, 0, checked.stdout + checked.stderr)


class StartTest(FolderTest):
    """What a program waits for that only draws."""

    def test_a_picture_in_a_file_wants_neither_numpy_nor_what_else_starts_slowly(self):
        ended = run_python("""
            import sys
            before = set(sys.modules)
            import orvex
            with orvex.Engine() as engine, engine.view(8, 8) as view:
                view.draw(engine.load(sys.argv[1]), orvex.Camera.look_at((0, 0, 9), (0, 0, 0)))
                view.save(sys.argv[2])
            slow = {"collections", "dataclasses", "json", "numpy", "re", "subprocess", "tempfile",
                    "threading", "typing"}
            print(sorted(slow & (set(sys.modules) - before)))
            """, LIGHTHOUSE, str(self.folder / "a.png"))
        self.assertEqual((ended.stdout, ended.stderr), ("[]\n", ""))

    def test_each_name_is_there_when_it_is_asked_for(self):
        ended = run_python("""
            import orvex
            assert set(orvex.__all__) <= set(dir(orvex)), dir(orvex)
            before = set(vars(orvex))
            from orvex import *
            assert not [name for name in orvex.__all__ if name not in globals()]
            assert {"Image", "Pick", "batch", "render"} & before == set(), "too early"
            assert orvex.Pick is Pick and vars(orvex)["Pick"] is Pick
            try:
                orvex.nothing
            except AttributeError as error:
                print(error)
            """)
        self.assertEqual((ended.stdout, ended.stderr),
                         ("module 'orvex' has no attribute 'nothing'\n", ""))

    def test_images_are_arrays_that_other_processes_can_be_given(self):
        image = orvex.render(LIGHTHOUSE, size=(8, 6))
        self.assertIs(type(image), orvex.Image)
        self.assertIsInstance(image, numpy.ndarray)
        again = pickle.loads(pickle.dumps(image))
        self.assertIs(type(again), orvex.Image)
        numpy.testing.assert_array_equal(again, image)


class PlainTest(unittest.TestCase):
    """Without NumPy."""

    def test_arrays_are_memoryviews_with_a_shape(self):
        ended = run_python(f"""
            import array, math, sys
            sys.modules["numpy"] = None
            import orvex
            path = {LIGHTHOUSE!r}
            image = orvex.render(path, size=(40, 30))
            assert type(image) is memoryview and image.shape == (30, 40, 4) and image.format == "B"
            views = orvex.render(path, (40, 30), layers=("depth", "normal", "id"))
            assert [view.format for view in views.values()] == ["f", "f", "i"], views
            assert views["depth"][0, 0] == math.inf and views["id"][0, 0] == -1
            assert views["normal"].shape == (30, 40, 3)
            with orvex.Engine() as engine, engine.view(16, 8, samples=1, look="plain") as view:
                square = [[-1, -1, 0], [1, -1, 0], [1, 1, 0], [-1, 1, 0]]
                mesh = engine.mesh(square, [[0, 1, 2], [0, 2, 3]], colors=[[1, 0, 0]] * 4)
                flat = array.array("f", [part for row in square for part in row])
                same = engine.mesh(flat, array.array("I", [0, 1, 2, 0, 2, 3]), color="#ff0000")
                camera = orvex.Camera.look_at((0, 0, 5), (0, 0, 0))
                for drawn in (mesh, same):
                    view.draw(drawn, camera)
                    assert view.color()[4, 8, 0] == 255
                assert camera.matrix((16, 8)).shape == (3, 3) and camera.pose[2, 3] == 5
                assert camera.project([[0, 0, 0], [1, 1, 0]], (16, 8))[0, 2] == 5
                assert mesh.extent[1, 0] == 1
                out = bytearray(8 * 16 * 4)
                view.color(memoryview(out).cast("B", (8, 16, 4)))
                assert out[(4 * 16 + 8) * 4] == 255
                assert mesh.turntable(2, 8).shape == (8, 16, 4)
                assert mesh._repr_png_()[:4] == b"\\x89PNG"
                for wrong in ([[0, 0]], [[0, 0, 0], [1]], 3, array.array("h", [1, 2, 3])):
                    try:
                        engine.mesh(wrong)
                    except orvex.ArgumentError as error:
                        assert "positions" in str(error), error
                    else:
                        raise AssertionError(wrong)
            """)
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
