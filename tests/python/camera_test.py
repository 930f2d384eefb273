"""Cameras: numbers that lead from the world to pixels and back."""

import math
import unittest

import numpy

import orvex
from support import FACES, LIGHTHOUSE, SQUARE

SIZE = (160, 120)


def homogeneous(points):
    """Points with a 1 behind."""
    return numpy.concatenate([points, numpy.ones(points.shape[:-1] + (1,))], axis=-1)


def pixel_middles():
    """The places of the middles of all pixels: (height, width, 2)."""
    x, y = numpy.meshgrid(numpy.arange(SIZE[0]) + 0.5, numpy.arange(SIZE[1]) + 0.5)
    return numpy.stack([x, y], axis=-1)


class PictureTest(unittest.TestCase):
    """Pictures against what their cameras tell."""

    @classmethod
    def setUpClass(cls):
        cls.engine = orvex.Engine()
        cls.addClassCleanup(cls.engine.close)
        cls.view = cls.engine.view(*SIZE)
        cls.model = cls.engine.load(LIGHTHOUSE)
        angles = [[1, 0, 0, 0.5], [0, -0.8, -0.6, 3], [0, 0.6, -0.8, 22], [0, 0, 0, 1]]
        cls.cameras = {
            "look at": orvex.Camera.look_at((9, 7, 14), (1, 3, 0), fov=50),
            "tilted": orvex.Camera.look_at((-12, 4, 9), (0, 2, 1), up=(1, 3, 0), fov=70),
            "orbit": orvex.Camera.orbit(cls.model, azimuth=200, elevation=35),
            "measured": orvex.Camera.measured([[150, 2, 75], [0, 148, 64], [0, 0, 1]], angles),
        }

    def test_matrix_and_pose_lead_points_to_their_pixels(self):
        for name, camera in self.cameras.items():
            with self.subTest(name):
                self.view.draw(self.model, camera)
                points = self.view.position().astype("float64")
                hit = numpy.isfinite(points[..., 0])
                self.assertGreater(hit.sum(), 1000)
                seen = homogeneous(points[hit]) @ camera.pose[:3].T @ camera.matrix(SIZE).T
                away = numpy.linalg.norm(seen[:, :2] / seen[:, 2:] - pixel_middles()[hit], axis=1)
                self.assertLess(away.max(), 0.01)
                numpy.testing.assert_allclose(seen[:, 2], self.view.depth()[hit], rtol=1e-5)

    def test_known_points_are_found_where_matrix_and_pose_say(self):
        # A square around each, of 1.4 pixels' reach: whole pixels have their middles in it or not.
        camera = orvex.Camera.look_at((3, 2, 5), (0, 0, 0), fov=40)
        pose, matrix = camera.pose, camera.matrix(SIZE)
        for point in ((0, 0, 0), (1, 0.5, -1), (-1.2, -0.7, 0.4)):
            with self.subTest(point):
                seen = matrix @ (pose @ [*point, 1])[:3]
                place = seen[:2] / seen[2]
                reach = 1.4 * seen[2] / matrix[1, 1]
                marker = self.engine.mesh(numpy.array(SQUARE) * reach, FACES)
                facing = numpy.eye(4)
                facing[:3, :3], facing[:3, 3] = pose[:3, :3].T, point
                marker.transform = facing
                self.view.draw(marker, camera)
                covered = (abs(pixel_middles() - place) < 1.4).all(axis=-1)
                self.assertGreater(covered.sum(), 3)
                numpy.testing.assert_array_equal(self.view.object() == 0, covered)

    def test_project_and_ray_say_the_same_as_matrix_and_pose(self):
        for name, camera in self.cameras.items():
            with self.subTest(name):
                points = numpy.array([[0, 1, 0], [1, 2, 3], [-2, 0.5, 1]])
                seen = homogeneous(points) @ camera.at(SIZE).pose[:3].T
                pixels = seen @ camera.matrix(SIZE).T
                expected = numpy.column_stack([pixels[:, :2] / pixels[:, 2:], seen[:, 2]])
                numpy.testing.assert_allclose(camera.project(points, SIZE), expected, rtol=1e-9)
                one = camera.project((0, 1, 0), SIZE)
                origin, direction = camera.ray(one[0], one[1], SIZE)
                self.assertAlmostEqual(numpy.linalg.norm(direction), 1, 6)
                along = numpy.dot([0, 1, 0] - origin, direction)
                numpy.testing.assert_allclose(origin + along * direction, [0, 1, 0], atol=1e-5)

    def test_depth_and_ids_agree_with_rays(self):
        camera = self.cameras["orbit"]
        self.view.draw(self.model, camera)
        layers = self.view.layers("depth", "object", "face")
        forward = camera.pose[2]
        inside, same_face = 0, 0
        for y in range(1, SIZE[1] - 1, 4):
            for x in range(1, SIZE[0] - 1, 3):
                hit = self.view.pick(x + 0.5, y + 0.5)
                around = layers["object"][y - 1:y + 2, x - 1:x + 2]
                if (around == around[1, 1]).all():
                    inside += 1
                    self.assertEqual(around[1, 1], -1 if hit is None else hit.object, (x, y))
                if hit is not None and (hit.object, hit.face) == (layers["object"][y, x],
                                                                 layers["face"][y, x]):
                    same_face += 1
                    depth = forward[:3] @ numpy.array(hit.point) + forward[3]
                    self.assertLess(abs(layers["depth"][y, x] / depth - 1), 1e-5, (x, y))
        self.assertGreater(inside, 700)
        self.assertGreater(same_face, 300)


class CameraTest(unittest.TestCase):
    """What needs no picture."""

    def test_pixels_have_their_middles_at_half_integers(self):
        matrix = orvex.Camera.look_at((0, 0, 5), (0, 0, 0), fov=90).matrix((640, 480))
        numpy.testing.assert_allclose(matrix, [[240, 0, 320], [0, 240, 240], [0, 0, 1]])

    def test_the_pose_has_x_to_the_right_y_down_and_z_forward(self):
        pose = orvex.Camera.look_at((0, 0, 5), (0, 0, 0)).pose
        self.assertEqual((pose.shape, pose.dtype), ((4, 4), numpy.float64))
        numpy.testing.assert_allclose(
            pose, [[1, 0, 0, 0], [0, -1, 0, 0], [0, 0, -1, 5], [0, 0, 0, 1]], atol=1e-12)

    def test_a_measured_camera_tells_what_it_was_told(self):
        matrix = numpy.array([[500, 1, 300], [0, 510, 200], [0, 0, 1.0]])
        pose = numpy.array([[0, 1, 0, 1], [0, 0, 1, 2], [1, 0, 0, 3.0]])
        camera = orvex.Camera.measured(matrix, pose)
        numpy.testing.assert_allclose(camera.matrix((640, 480)), matrix)
        numpy.testing.assert_allclose(camera.pose[:3], pose)

    def test_points_behind_the_eye_are_nowhere(self):
        camera = orvex.Camera.look_at((0, 0, 5), (0, 0, 0))
        seen = camera.project([[0, 0, 0], [0, 0, 6]], (10, 10))
        numpy.testing.assert_allclose(seen[0], [5, 5, 5])
        self.assertTrue(numpy.isnan(seen[1]).all())
        self.assertEqual(camera.project(numpy.empty((0, 3)), (10, 10)).shape, (0, 3))

    def test_a_parallel_camera_has_no_matrix_and_knows_its_height(self):
        camera = orvex.Camera.look_at((0, 0, 5), (0, 0, 0), height=2)
        numpy.testing.assert_allclose(camera.project((0, 1, 0), (20, 10)), [10, 0, 5], atol=1e-9)
        with self.assertRaises(orvex.ArgumentError):
            camera.matrix((20, 10))

    def test_an_orbit_stands_for_a_size(self):
        with orvex.Engine() as engine:
            mesh = engine.mesh(SQUARE, FACES)
            orbit = orvex.Camera.orbit(mesh, azimuth=0, elevation=0)
            with self.assertRaisesRegex(orvex.ArgumentError, "size"):
                orbit.pose
            wide, high = orbit.at((200, 100)), orbit.at((100, 200))
            self.assertLess(wide.pose[2, 3], high.pose[2, 3])
            known = orvex.Camera.orbit(mesh, azimuth=0, elevation=0, size=(200, 100))
            numpy.testing.assert_array_equal(known.pose, wide.pose)
            with self.assertRaisesRegex(orvex.ArgumentError, "models"):
                orvex.Camera.orbit(size=(4, 4)).pose

    def test_a_turn_does_not_breathe(self):
        with orvex.Engine() as engine:
            model = engine.load(LIGHTHOUSE)
            eyes = [numpy.linalg.inv(orvex.Camera.orbit(
                model, azimuth=angle, aim="turn", elevation=0, size=(80, 60)).pose)[:3, 3]
                for angle in (0, 50, 140)]
            middle = [0.5 * (model.extent[0] + model.extent[1])[0],
                      0.5 * (model.extent[0] + model.extent[1])[2]]
            away = [math.hypot(eye[0] - middle[0], eye[2] - middle[1]) for eye in eyes]
            numpy.testing.assert_allclose(away, away[0], rtol=1e-3)


if __name__ == "__main__":
    unittest.main()
