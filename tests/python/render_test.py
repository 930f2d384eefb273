"""One call, one picture; and models told of."""

import concurrent.futures
import pathlib
import threading
import unittest

import numpy

import orvex
from support import DATA, FACES, LIGHTHOUSE, SQUARE, FolderTest


class RenderTest(FolderTest):
    """`render`."""

    @classmethod
    def tearDownClass(cls):
        orvex.stop()

    def test_a_picture_has_the_size_that_is_asked_for(self):
        image = orvex.render(LIGHTHOUSE, size=(64, 48))
        self.assertEqual((image.shape, image.dtype), ((48, 64, 4), numpy.uint8))
        self.assertIsInstance(image, orvex.Image)
        self.assertGreater(len(numpy.unique(image.reshape(-1, 4), axis=0)), 100)

    def test_layers_are_a_dict_by_their_names(self):
        views = orvex.render(LIGHTHOUSE, size=(64, 48), layers=("color", "depth", "normal", "id"),
                             camera=orvex.Camera.look_at(eye=(12, 9, 20), target=(0, 3, 0), fov=40))
        self.assertEqual(list(views), ["color", "depth", "normal", "id"])
        self.assertEqual((views["id"] >= 0).sum(), numpy.isfinite(views["depth"]).sum())
        self.assertGreater((views["id"] >= 0).sum(), 500)

    def test_it_draws_what_an_engine_draws(self):
        with orvex.Engine() as engine, engine.view(64, 48) as view:
            view.draw(engine.load(LIGHTHOUSE))
            expected = view.color()
        numpy.testing.assert_array_equal(orvex.render(LIGHTHOUSE, size=(64, 48)), expected)

    def test_options_change_the_picture_and_are_forgotten_afterwards(self):
        plain = orvex.render(LIGHTHOUSE, (40, 30))
        for options in ({"look": "plain"}, {"camera": orvex.Camera.orbit(azimuth=90)},
                        {"background": "#ff0000"}):
            with self.subTest(options):
                self.assertTrue((orvex.render(LIGHTHOUSE, (40, 30), **options) != plain).any())
        numpy.testing.assert_array_equal(orvex.render(LIGHTHOUSE, (40, 30)), plain)

    def test_several_files_are_drawn_together(self):
        triangle = self.file("a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        other = self.file("b.obj", "v 0 0 1\nv -1 0 1\nv 0 1 1\nf 1 2 3\n")
        ids = orvex.render([triangle, pathlib.Path(other)], (64, 64), layers="id")["id"]
        self.assertEqual(set(ids.ravel()), {-1, 0, 1})

    def test_it_reads_into_the_arrays_that_are_given(self):
        image = numpy.zeros((30, 40, 4), "uint8")
        self.assertIs(orvex.render(LIGHTHOUSE, (40, 30), out=image), image)
        depth = numpy.zeros((30, 40), "float32")
        views = orvex.render(LIGHTHOUSE, (40, 30), layers=["depth"], out={"depth": depth})
        self.assertIs(views["depth"], depth)
        self.assertTrue(image.any() and depth.any())

    def test_the_engine_that_runs_here_draws(self):
        with orvex.Engine() as engine:
            mesh = engine.mesh(SQUARE, FACES, color=(0, 1, 0))
            image = orvex.render([mesh], (16, 16), look="plain")
            self.assertEqual(image[8, 8].tolist(), [0, 255, 0, 255])
            self.assertEqual(orvex.render(LIGHTHOUSE, (16, 16)).shape, (16, 16, 4))
            self.assertFalse(mesh.closed)

    def test_an_engine_can_start_after_it(self):
        orvex.render(LIGHTHOUSE, (8, 8))
        with orvex.Engine() as engine:
            engine.view(8, 8)
        orvex.render(LIGHTHOUSE, (8, 8))

    def test_threads_share_it(self):
        expected = orvex.render(LIGHTHOUSE, (24, 24))
        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            for image in pool.map(lambda _: orvex.render(LIGHTHOUSE, (24, 24)), range(12)):
                numpy.testing.assert_array_equal(image, expected)
        self.assertEqual([thread.name for thread in threading.enumerate()].count("orvex"), 1)

    def test_a_file_that_is_refused_is_named(self):
        bad = self.file("bad.obj", "f 1 2 3\n")
        for path, kind in ((bad, orvex.FileError), (str(self.folder / "no.obj"), FileNotFoundError),
                           (str(self.folder), orvex.FileError)):
            with self.subTest(path):
                with self.assertRaises(kind) as caught:
                    orvex.render(path)
                self.assertIsInstance(caught.exception, (orvex.FileError, OSError))
                self.assertTrue(str(caught.exception).startswith(path), str(caught.exception))
                self.assertEqual(caught.exception.filename, path)


class ModelTest(FolderTest):
    """What models tell."""

    @classmethod
    def setUpClass(cls):
        cls.engine = orvex.Engine()
        cls.addClassCleanup(cls.engine.close)
        cls.model = cls.engine.load(LIGHTHOUSE)

    def test_its_numbers(self):
        self.assertEqual(len(self.model.meshes), 12)
        self.assertEqual(self.model.face_count, 9082)
        self.assertEqual(sum(mesh.face_count for mesh in self.model.meshes), 9082)
        self.assertGreater(self.model.vertex_count, 6000)
        self.assertEqual((self.model.point_count, self.model.up), (0, "y"))
        self.assertEqual(repr(self.model), "<orvex.Model of 12 meshes, 9082 faces>")
        numpy.testing.assert_allclose(self.model.extent, [[-8, -0.5069, -8], [8, 8.03, 8]],
                                      atol=1e-3)

    def test_its_materials_and_files(self):
        water = next(one for one in self.model.materials if one.name == "water")
        self.assertEqual([texture.name for texture in water.textures], ["lighthouse_water.png"])
        self.assertEqual((water.textures[0].width, water.opacity), (256, 1.0))
        self.assertEqual(self.model.files[0], LIGHTHOUSE)
        self.assertIn(str(DATA / "lighthouse.mtl"), self.model.files)
        self.assertEqual((self.model.missing, self.model.notes), ([], []))

    def test_what_is_missing_is_told_with_its_reason(self):
        self.file("a.mtl", "newmtl a\nmap_Kd gone.png\n")
        path = self.file("a.obj", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl a\nf 1 2 3\n")
        with self.engine.load(path) as model:
            (texture,) = model.missing
            self.assertEqual(texture.name, "gone.png")
            self.assertTrue(texture.reason)

    def test_what_is_odd_is_noted(self):
        path = self.file("a.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n")
        with self.engine.load(path) as model:
            self.assertTrue(model.notes and all(model.notes))

    def test_a_transform_places_it(self):
        with self.engine.mesh(SQUARE, FACES) as mesh:
            mesh.transform = numpy.array(
                [[2, 0, 0, 5], [0, 1, 0, 6], [0, 0, 1, 7], [0, 0, 0, 1]], "float32")
            numpy.testing.assert_allclose(mesh.extent, [[3, 5, 7], [7, 7, 7]])
            mesh.set_transform()
            numpy.testing.assert_allclose(mesh.extent, [[-1, -1, 0], [1, 1, 0]])

    def test_a_ray_picks_the_nearest_of_several(self):
        near, far = self.engine.mesh(SQUARE, FACES), self.engine.mesh(SQUARE, FACES)
        near.transform = [[1, 0, 0, 0], [0, 1, 0, 0], [0, 0, 1, 2], [0, 0, 0, 1]]
        hit = self.engine.pick([far, near], (0.5, -0.5, 9), (0, 0, -2))
        self.assertIs(hit.model, near)
        self.assertEqual((hit.mesh, hit.object, hit.face, hit.distance), (0, 1, 0, 3.5))
        self.assertEqual(hit.point, (0.5, -0.5, 2.0))
        self.assertAlmostEqual(sum(hit.barycentric), 1)
        self.assertIsNone(far.pick((5, 5, 5), (0, 0, -1)))

    def test_stand_up_leaves_what_stands(self):
        with self.engine.load(LIGHTHOUSE) as model:
            model.stand_up()
            numpy.testing.assert_allclose(model.extent, self.model.extent, atol=1e-6)


class MeshTest(unittest.TestCase):
    """Arrays in."""

    @classmethod
    def setUpClass(cls):
        cls.engine = orvex.Engine()
        cls.addClassCleanup(cls.engine.close)
        cls.view = cls.engine.view(32, 32, samples=1, look="plain", background="transparent")

    def picture_of(self, mesh):
        """The mesh from the front, with one unit the half of the picture."""
        self.view.draw(mesh, orvex.Camera.look_at((0, 0, 5), (0, 0, 0), height=2))
        return self.view.color()

    def test_each_dtype_that_is_taken_gives_the_same(self):
        expected = self.picture_of(self.engine.mesh(SQUARE, FACES, color="#336699"))
        for floats in ("float32", "float64"):
            for integers in ("uint8", "uint16", "uint32", "int32", "int64"):
                with self.subTest(f"{floats} {integers}"):
                    mesh = self.engine.mesh(numpy.array(SQUARE, floats),
                                            numpy.array(FACES, integers), color="#336699")
                    numpy.testing.assert_array_equal(self.picture_of(mesh), expected)

    def test_slices_are_read_where_they_lie(self):
        expected = self.picture_of(self.engine.mesh(SQUARE, FACES))
        wide = numpy.zeros((8, 7), "float32")
        wide[::2, 2:5] = SQUARE
        mesh = self.engine.mesh(wide[::2, 2:5], numpy.array(FACES)[::-1][::-1])
        numpy.testing.assert_array_equal(self.picture_of(mesh), expected)
        backwards = numpy.array(SQUARE[::-1])[::-1]
        self.assertLess(backwards.strides[0], 0)
        numpy.testing.assert_array_equal(
            self.picture_of(self.engine.mesh(backwards, FACES)), expected)

    def test_nothing_of_the_arrays_is_kept(self):
        positions = numpy.array(SQUARE, "float32")
        mesh = self.engine.mesh(positions, FACES)
        expected = self.picture_of(mesh)
        positions[:] = 9
        numpy.testing.assert_array_equal(self.picture_of(mesh), expected)

    def test_colors_come_in_three_kinds(self):
        for colors in ([[1, 0, 0]] * 4, [[1, 0, 0, 1]] * 4,
                       numpy.array([[255, 0, 0]] * 4, "uint8")):
            image = self.picture_of(self.engine.mesh(SQUARE, FACES, colors=colors))
            self.assertEqual(image[16, 16].tolist(), [255, 0, 0, 255])

    def test_a_texture_lies_on_it(self):
        texture = numpy.zeros((4, 4, 3), "uint8")
        texture[:, :2], texture[:, 2:] = (255, 0, 0), (0, 0, 255)
        image = self.picture_of(self.engine.mesh(
            SQUARE, FACES, texcoords=[[0, 0], [1, 0], [1, 1], [0, 1]], texture=texture))
        self.assertEqual(image[16, 8].tolist(), [255, 0, 0, 255])
        self.assertEqual(image[16, 24].tolist(), [0, 0, 255, 255])

    def test_without_faces_every_three_vertices_are_one(self):
        mesh = self.engine.mesh(numpy.array(SQUARE)[[0, 1, 2, 0, 2, 3]])
        self.assertEqual(mesh.face_count, 2)

    def test_updates_change_what_they_name(self):
        mesh = self.engine.mesh(SQUARE, FACES, color=(1, 0, 0), name="it")
        mesh.update(numpy.array(SQUARE) * [0.5, 1, 1])
        numpy.testing.assert_allclose(mesh.extent, [[-0.5, -1, 0], [0.5, 1, 0]])
        self.assertEqual(self.picture_of(mesh)[16, 16].tolist(), [255, 0, 0, 255])
        mesh.update(color=(0, 0, 1))
        self.assertEqual(self.picture_of(mesh)[16, 16].tolist(), [0, 0, 255, 255])
        mesh.update(faces=[[0, 1, 2]])
        self.assertEqual(mesh.face_count, 1)
        mesh.update([[0, 0, 0], [1, 0, 0], [0, 1, 0]], [[0, 1, 2]])
        self.assertEqual((mesh.vertex_count, mesh.meshes[0].name), (3, "it"))


if __name__ == "__main__":
    unittest.main()
