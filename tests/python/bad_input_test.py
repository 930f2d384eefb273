"""Whatever is wrong with an argument, the exception names it."""

import math
import unittest

import numpy

import orvex
from support import FACES, LIGHTHOUSE, SQUARE, FolderTest

POSITIONS = numpy.array(SQUARE, "float32")
ENDLESS = numpy.array([[math.nan, 0, 0]] * 3, "float32")


class BadInputTest(FolderTest):
    """Each row: the kind of exception, what its sentence has in it, and the call."""

    @classmethod
    def setUpClass(cls):
        cls.engine = orvex.Engine()
        cls.addClassCleanup(cls.engine.close)
        cls.view = cls.engine.view(16, 8)
        cls.square = cls.engine.mesh(SQUARE, FACES)
        cls.view.draw(cls.square)

    def refuse(self, *rows):
        """Expects that each row is refused, and that all is as it was."""
        before = self.view.color()
        for kind, words, call in rows:
            with self.subTest(words):
                with self.assertRaisesRegex(kind, words) as caught:
                    call()
                self.assertIsInstance(caught.exception, orvex.Error)
        numpy.testing.assert_array_equal(self.view.color(), before)

    def test_sizes(self):
        value, wrong = orvex.ArgumentError, TypeError
        self.refuse(
            (value, "width is -1, not from 1", lambda: self.engine.view(-1, 8)),
            (value, "height is 0", lambda: self.engine.view(8, 0)),
            (value, "width is 10000000000", lambda: self.engine.view(10**10, 8)),
            (orvex.Error, "2147483647", lambda: self.engine.view(2**31 - 1, 8)),
            (wrong, "width is a float", lambda: self.engine.view(8.0, 8)),
            (wrong, "height is a str", lambda: self.engine.view(8, "8")),
            (value, "width is -4", lambda: self.view.resize(-4, 8)),
            (orvex.Error, "100000", lambda: self.view.resize(100000, 8)),
            (wrong, "size is 640", lambda: orvex.render(LIGHTHOUSE, 640)),
            (value, r"size\[1\] is -1", lambda: orvex.render(LIGHTHOUSE, (640, -1))),
            (value, "samples is 0", lambda: self.engine.view(8, 8, samples=0)),
            (value, "supersampling is 9", lambda: self.engine.view(8, 8, supersampling=9)))

    def test_words(self):
        value = orvex.ArgumentError
        self.refuse(
            (value, "path is 'gl9', not one of gl3, gl2", lambda: self.engine.view(8, 8, path="gl9")),
            (orvex.LookError, "no such|nowhere", lambda: self.view.set_look("nowhere")),
            (orvex.LookError, ".", lambda: self.view.set_look(source="no shader")),
            (FileNotFoundError, "^no.glsl", lambda: self.view.set_look(file="no.glsl")),
            (value, "one of them", lambda: self.view.set_look("lit", source="")),
            (value, "background is 'blau'", lambda: self.view.set_background("blau")),
            (value, r"background is \(2\.0", lambda: self.view.set_background((2, 0, 0))),
            (value, "background has 2 numbers", lambda: self.view.set_background((0, 0))),
            (value, "layers: there is no 'heat'", lambda: self.view.layers("heat")),
            (value, "layers: there is no 'heat'", lambda: orvex.render(LIGHTHOUSE, layers=["heat"])),
            (value, "layers is empty", lambda: orvex.render(LIGHTHOUSE, layers=())),
            (value, "space is 'moon'", lambda: self.view.normal(space="moon")),
            (value, "normals is 'bent'", lambda: self.engine.load(LIGHTHOUSE, normals="bent")),
            (TypeError, "words is a int", lambda: self.view.text(3, 0, 0)),
            (value, "words has a null", lambda: self.view.text("a\0b", 0, 0)),
            (value, "x is nan", lambda: self.view.text("a", math.nan, 0)),
            (FileNotFoundError, "^no.xml", lambda: self.view.text("a", 0, 0, font="no.xml")),
            (TypeError, "on_log is a int", lambda: orvex.Engine(on_log=3)),
            (TypeError, "plugins is a int", lambda: orvex.Engine(plugins=[3])))

    def test_paths(self):
        gone = str(self.folder / "none" / "a.png")
        self.refuse(
            (TypeError, "path is a int", lambda: self.engine.load(3)),
            (orvex.ArgumentError, "path has a null", lambda: self.engine.load("a\0.obj")),
            (FileNotFoundError, "^no.obj", lambda: self.engine.load("no.obj")),
            (orvex.FileError, "^" + self.folder.name[:0], lambda: self.engine.load(self.folder)),
            (orvex.FileError, gone, lambda: self.view.save(gone)),
            (orvex.Error, "a.odd", lambda: self.view.save(self.folder / "a.odd")),
            (orvex.ArgumentError, "quality is 101", lambda: self.view.save("a.jpg", quality=101)),
            (orvex.FileError, gone, lambda: orvex.write(self.view.color(), gone)))
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_models_and_cameras(self):
        value, wrong = orvex.ArgumentError, TypeError
        look = orvex.Camera.look_at
        self.refuse(
            (wrong, r"models\[1\] is a str", lambda: self.view.draw([self.square, "a"])),
            (wrong, "models is a int", lambda: self.view.draw(3)),
            (wrong, "models is a int", lambda: orvex.render(3)),
            (wrong, "camera is a tuple", lambda: self.view.draw(self.square, (1, 2))),
            (wrong, "cameras are made by", orvex.Camera),
            (value, "eye has 2 numbers", lambda: look((0, 0), (0, 0, 1))),
            (value, "eye is nan", lambda: look((0, 0, math.nan), (0, 0, 1))),
            (value, ".", lambda: look((0, 0, 1), (0, 0, 1))),
            (value, "fov is -1", lambda: look((0, 0, 0), (0, 0, 1), fov=-1)),
            (value, "180", lambda: look((0, 0, 0), (0, 0, 1), fov=180)),
            (value, "isn't below far", lambda: look((0, 0, 0), (0, 0, 1), near=2, far=1)),
            (value, "matrix has 4 numbers", lambda: orvex.Camera.measured(
                [[1, 0], [0, 1]], numpy.eye(4))),
            (value, "pose has 9 numbers", lambda: orvex.Camera.measured(
                numpy.eye(3), numpy.eye(4)[:, :3].T[:3, :3])),
            (value, "aim is 'far'", lambda: orvex.Camera.orbit(aim="far")),
            (value, "zoom is 0", lambda: orvex.Camera.orbit(zoom=0)),
            (value, "azimuth is inf", lambda: orvex.Camera.orbit(azimuth=math.inf)),
            (value, "matrix is nan", lambda: self.square.set_transform([math.nan] * 16)),
            (value, "matrix has 9", lambda: self.square.set_transform(numpy.eye(3))),
            (value, "direction", lambda: self.square.pick((0, 0, 1), (0, 0, 0))))

    def test_arrays_that_are_read(self):
        value, wrong, mesh = orvex.ArgumentError, TypeError, self.engine.mesh
        self.refuse(
            (wrong, "positions has dtype int64", lambda: mesh(POSITIONS.astype("int64"), FACES)),
            (wrong, "positions has dtype float16", lambda: mesh(POSITIONS.astype("f2"), FACES)),
            (wrong, "positions has dtype '>f'", lambda: mesh(POSITIONS.astype(">f4"), FACES)),
            (wrong, "positions makes no array", lambda: mesh([["a", "b", "c"]], FACES)),
            (wrong, "positions", lambda: mesh("abc", FACES)),
            (wrong, "positions", lambda: mesh(FolderTest, FACES)),
            (value, r"positions has shape \(4, 2\)", lambda: mesh(POSITIONS[:, :2], FACES)),
            (value, r"positions has shape \(12,\)", lambda: mesh(POSITIONS.ravel(), FACES)),
            (value, "positions has strides", lambda: mesh(numpy.zeros((4, 6), "f4")[:, ::2], FACES)),
            (value, "positions has strides", lambda: mesh(numpy.asfortranarray(POSITIONS), FACES)),
            (value, "positions is empty", lambda: mesh(numpy.empty((0, 3), "f4"), FACES)),
            (value, "positions", lambda: mesh(ENDLESS)),
            (value, "positions", lambda: mesh(POSITIONS.astype("f8") * 1e300, FACES)),
            (value, "positions is None", lambda: mesh(None, FACES)),
            (wrong, "faces has dtype float64", lambda: mesh(POSITIONS, numpy.array(FACES, "f8"))),
            (value, "faces", lambda: mesh(POSITIONS, [[0, 1, 4]])),
            (value, "faces", lambda: mesh(POSITIONS, numpy.array([[0, 1, -1]]))),
            (value, "4 positions, 3 normals", lambda: mesh(POSITIONS, FACES, normals=POSITIONS[:3])),
            (value, r"texcoords has shape \(4, 3\)", lambda: mesh(SQUARE, FACES, texcoords=SQUARE)),
            (wrong, "colors has dtype uint16", lambda: mesh(
                SQUARE, FACES, colors=numpy.zeros((4, 3), "u2"))),
            (wrong, "texture has dtype float32", lambda: mesh(
                SQUARE, FACES, texture=numpy.zeros((2, 2, 3), "f4"))),
            (value, r"texture has shape \(2, 2, 5\)", lambda: mesh(
                SQUARE, FACES, texture=numpy.zeros((2, 2, 5), "u1"))),
            (value, "shading is 'odd'", lambda: mesh(SQUARE, FACES, shading="odd")),
            (value, "faces", lambda: self.square.update(faces=[[0, 1, 9]])),
            (value, "pixels has shape", lambda: orvex.write(numpy.zeros((0, 4), "u1"), "a.png")),
            (wrong, "pixels has dtype int64", lambda: orvex.write(
                numpy.zeros((2, 2), "int64"), "a.npy")))

    def test_arrays_that_are_written(self):
        value, wrong, color = orvex.ArgumentError, TypeError, self.view.color
        fixed = numpy.zeros((8, 16, 4), "uint8")
        fixed.flags.writeable = False
        within = numpy.lib.stride_tricks.as_strided(
            numpy.zeros(999, "uint8"), (8, 16, 4), (4, 4, 1))
        self.refuse(
            (wrong, "out has dtype float32", lambda: color(numpy.zeros((8, 16, 4), "f4"))),
            (value, r"out has shape \(16, 8, 4\), not \(8, 16, 4\)",
             lambda: color(numpy.zeros((16, 8, 4), "u1"))),
            (value, "out has shape", lambda: color(numpy.zeros(512, "u1"))),
            (value, "out is read-only", lambda: color(fixed)),
            (value, "out has shape", lambda: color(b"a" * 512)),
            (value, "out has strides", lambda: color(numpy.zeros((8, 32, 4), "u1")[:, ::2])),
            (value, "rows lie in each other", lambda: color(within)),
            (wrong, "out is a list", lambda: color([])),
            (wrong, r"out\['depth'\] has dtype float64",
             lambda: self.view.depth(numpy.zeros((8, 16), "f8"))),
            (value, r"out\['face'\]: the layer isn't asked for",
             lambda: self.view.layers("depth", out={"face": numpy.zeros((8, 16), "i4")})))

    def test_a_view_that_drew_nothing_has_no_layers(self):
        with self.engine.view(8, 8) as view:
            self.refuse((orvex.ArgumentError, "nothing was drawn yet", view.depth),
                        (orvex.ArgumentError, "nothing was drawn yet", lambda: view.pick(1, 1)))


if __name__ == "__main__":
    unittest.main()
