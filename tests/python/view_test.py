"""Pictures and layers: what is in them, and in whose memory they lie."""

import math
import unittest
import unittest.mock

import numpy

import orvex
from support import FACES, LIGHTHOUSE, SQUARE, FolderTest

FRONT = orvex.Camera.look_at(eye=(0, 0, 4), target=(0, 0, 0), fov=40)


class ViewTest(unittest.TestCase):
    """With an engine, a view of 64x48 and a square of 2x2 units in its middle."""

    @classmethod
    def setUpClass(cls):
        cls.engine = orvex.Engine()
        cls.addClassCleanup(cls.engine.close)
        cls.view = cls.engine.view(64, 48, samples=1)

    def setUp(self):
        self.view.resize(64, 48)
        self.view.background = "transparent"
        self.view.look = "plain"
        self.square = self.engine.mesh(SQUARE, FACES, color=(1, 0, 0))

    def test_color_is_four_bytes_a_pixel_from_the_upper_row_on(self):
        self.square.set_transform([[1, 0, 0, 0], [0, 1, 0, 1], [0, 0, 1, 0], [0, 0, 0, 1]])
        self.view.draw(self.square, FRONT)
        image = self.view.color()
        self.assertEqual((image.shape, image.dtype), ((48, 64, 4), numpy.uint8))
        self.assertEqual(image[4, 32].tolist(), [255, 0, 0, 255])
        self.assertEqual(image[44, 32].tolist(), [0, 0, 0, 0])

    def test_layers_have_the_shapes_the_dtypes_and_the_empty_values_that_are_told(self):
        self.view.draw([self.square], FRONT)
        middle = {"depth": 4, "normal": [0, 0, 1], "object": 0, "id": 0, "material": 0}
        for name, shape, dtype, empty in (("depth", (), "float32", math.inf),
                                          ("normal", (3,), "float32", [0, 0, 0]),
                                          ("object", (), "int32", -1), ("id", (), "int32", -1),
                                          ("material", (), "int32", -1), ("face", (), "int32", -1)):
            with self.subTest(name):
                layer = self.view.layers(name)[name]
                self.assertEqual((layer.shape, layer.dtype), ((48, 64) + shape, dtype))
                self.assertEqual(layer[0, 0].tolist(), empty)
                if name in middle:
                    numpy.testing.assert_allclose(layer[24, 32], middle[name], atol=1e-5)
        self.assertTrue(numpy.isnan(self.view.position()[0, 0]).all())

    def test_each_layer_is_asked_for_by_its_name_or_with_others(self):
        self.view.draw(self.square, FRONT)
        several = self.view.layers("color", ["depth", "normal"], "position", "object", "material",
                                   "face")
        for name, layer in several.items():
            numpy.testing.assert_array_equal(layer, getattr(self.view, name)(), name)

    def test_layers_in_the_space_of_the_camera_look_against_it(self):
        self.view.draw(self.square, orvex.Camera.look_at((4, 0, 4), (0, 0, 0)))
        normal = self.view.normal(space="camera")[24, 32]
        numpy.testing.assert_allclose(normal, [-math.sqrt(0.5), 0, -math.sqrt(0.5)], atol=1e-5)
        self.assertAlmostEqual(self.view.position(space="camera")[24, 32][2], math.sqrt(32), 1)

    def test_ids_count_on_from_one_model_to_the_next(self):
        other = self.engine.mesh(SQUARE, FACES, name="other")
        other.transform = [[0.2, 0, 0, 0], [0, 0.2, 0, 0], [0, 0, 1, 1], [0, 0, 0, 1]]
        self.view.draw([self.square, other], FRONT)
        self.assertEqual(set(self.view.object().ravel()), {-1, 0, 1})
        self.assertEqual(self.view.object()[24, 32], 1)

    def test_the_read_writes_into_the_array_itself(self):
        self.view.draw(self.square, FRONT)
        for name, read, shape, dtype in (("color", self.view.color, (48, 64, 4), "uint8"),
                                         ("depth", self.view.depth, (48, 64), "float32")):
            with self.subTest(name):
                array = numpy.full(shape, 7, dtype)
                place = array.ctypes.data
                self.assertIs(read(array), array)
                self.assertEqual(array.ctypes.data, place)
                numpy.testing.assert_array_equal(array, read())

    def test_a_new_array_lies_where_the_library_was_told_to_write(self):
        self.view.draw(self.square, FRONT)
        told = []
        call = self.view._session.call

        def hear(function, *arguments):
            told.extend(arguments)
            return call(function, *arguments)

        with unittest.mock.patch.object(self.view._session, "call", hear):
            image = self.view.color()
        self.assertEqual(int(orvex._library.ffi.cast("intptr_t", told[1])), image.ctypes.data)

    def test_rows_may_have_gaps_or_lie_upside_down(self):
        self.view.draw(self.square, FRONT)
        plain = self.view.layers("color", "depth")
        wide = {"color": numpy.zeros((48, 100, 4), "uint8"), "depth": numpy.zeros((48, 70), "f4")}
        inner = {name: array[:, 2:66] for name, array in wide.items()}
        turned = {name: numpy.empty_like(array)[::-1] for name, array in plain.items()}
        for out in (inner, turned):
            self.assertIs(self.view.layers("color", "depth", out=out)["depth"], out["depth"])
            for name in plain:
                numpy.testing.assert_array_equal(out[name], plain[name])
        self.assertFalse(wide["color"][:, :2].any() or wide["color"][:, 66:].any())

    def test_another_size_takes_effect(self):
        self.view.resize(30, 20)
        self.assertEqual(self.view.size, (30, 20))
        self.view.draw(self.square)
        self.assertEqual(self.view.color().shape, (20, 30, 4))

    def test_looks_and_backgrounds_change_the_picture(self):
        self.view.background = (0, 0, 1)
        self.view.look = "normals"
        self.view.draw(self.square, FRONT)
        self.assertEqual(self.view.color()[0, 0].tolist(), [0, 0, 255, 255])
        self.assertNotEqual(self.view.color()[24, 32].tolist(), [255, 0, 0, 255])

    def test_a_text_is_written_over_the_picture(self):
        self.view.draw([], FRONT)
        self.assertFalse(self.view.color().any())
        self.view.text("W", 4, 4, height=30, color="#00ff00")
        image = self.view.color()
        self.assertTrue((image[..., 1] == 255).any())
        self.assertFalse(image[40:].any())
        size = self.view.measure_text("W\nW", height=30)
        self.assertEqual(size.lines, 2)
        self.assertGreater(size.height, 50)

    def test_what_is_seen_at_a_place_can_be_picked(self):
        self.view.draw(self.square, FRONT)
        picked = self.view.pick(32, 24)
        self.assertIs(picked.model, self.square)
        numpy.testing.assert_allclose(picked.point, (0, 0, 0), atol=1e-6)
        self.assertAlmostEqual(picked.distance, 4, 5)
        self.assertIsNone(self.view.pick(0.5, 0.5))

    def test_a_view_tells_what_it_is(self):
        self.assertEqual(self.view.size, (64, 48))
        self.assertEqual(self.view.samples, 1)
        self.assertTrue(self.view.driver)
        self.assertEqual(repr(self.view), "<orvex.View, 64x48>")

    def test_path_gl2_draws_the_same_square(self):
        self.view.draw(self.square, FRONT)
        with self.engine.view(64, 48, samples=1, look="plain", background="transparent",
                              path="gl2") as old:
            old.draw(self.square, FRONT)
            numpy.testing.assert_array_equal(old.color(), self.view.color())


class FileTest(FolderTest):
    """Pictures to files, and to notebooks."""

    def setUp(self):
        super().setUp()
        self.engine = orvex.Engine()
        self.addCleanup(self.engine.close)

    def test_a_view_is_saved_as_a_picture(self):
        with self.engine.view(32, 32) as view:
            view.draw(self.engine.mesh(SQUARE, FACES))
            for name, start in (("a.png", b"\x89PNG"), ("a.jpg", b"\xff\xd8\xff")):
                view.save(self.folder / name)
                self.assertEqual((self.folder / name).read_bytes()[:len(start)], start)
            view.save(self.folder / "plain", format="npy")
            numpy.testing.assert_array_equal(
                numpy.load(self.folder / "plain")[..., :3], view.color()[..., :3])

    def test_arrays_are_written_as_they_are(self):
        depth = numpy.arange(12, dtype="float32").reshape(3, 4)
        orvex.write(depth[::-1], self.folder / "a.npy")
        numpy.testing.assert_array_equal(
            numpy.load(self.folder / "a.npy").reshape(3, 4), depth[::-1])

    def test_layers_are_written_to_one_file(self):
        with self.engine.view(32, 32) as view:
            view.draw(self.engine.mesh(SQUARE, FACES))
            orvex.write_layers(view.layers("color", "depth", "normal"), self.folder / "a.exr")
        content = (self.folder / "a.exr").read_bytes()
        self.assertEqual(content[:4], b"\x76\x2f\x31\x01")
        self.assertIn(b"depth.Z", content)

    def test_an_image_shows_itself_in_a_notebook(self):
        image = orvex.render(LIGHTHOUSE, size=(40, 30), background="transparent")
        shown = image._repr_png_()
        self.assertEqual(shown[:8], b"\x89PNG\r\n\x1a\n")
        self.assertIsNone(image[..., 3]._repr_png_())
        orvex.write(image, self.folder / "a.png")
        other = (self.folder / "a.png").read_bytes()
        self.assertEqual(shown[16:24], other[16:24], "width and height")

    def test_a_model_shows_a_strip_of_its_turn(self):
        model = self.engine.load(LIGHTHOUSE)
        strip = model.turntable(count=3, size=40)
        self.assertEqual(strip.shape, (40, 120, 4))
        self.assertTrue(strip[:, :40].any() and strip[:, 80:].any())
        self.assertTrue((strip[:, :40] != strip[:, 40:80]).any())
        self.assertEqual(model._repr_png_()[:4], b"\x89PNG")
        model.close()
        self.assertIsNone(model._repr_png_())


if __name__ == "__main__":
    unittest.main()
