"""The guide's programs in Python say what its pages show, and write what they promise."""

import json
import pathlib
import subprocess
import sys
import unittest

import numpy

from support import DATA, LIGHTHOUSE, TOP, FolderTest

CODE = TOP / "docs" / "guide" / "code"


class GuideTest(FolderTest):
    """Each program, in an empty folder."""

    def words_of(self, name, *arguments):
        """What a program prints. It has nothing to say on the other stream."""
        ended = subprocess.run([sys.executable, "-W", "error", str(CODE / name), *arguments],
                               capture_output=True, text=True, check=False)
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))
        return ended.stdout

    def test_from_python(self):
        self.assertEqual(self.words_of("python_first.py", str(DATA), str(self.folder)),
                         "(240, 320, 4) uint8\n"
                         "in the middle: 20.6 away\n"
                         "pixels of the mesh: True\n"
                         "its corner: 186 108, 24.4 away\n"
                         "there: True\n"
                         "none.obj: No such file or directory\n")
        self.assertEqual({path.name for path in self.folder.iterdir()},
                         {"0.png", "120.png", "240.png"})

    def test_a_pool_of_processes(self):
        words = self.words_of("python_pool.py", LIGHTHOUSE, LIGHTHOUSE)
        first, second = words.splitlines()
        self.assertEqual(first, second)
        self.assertRegex(first, LIGHTHOUSE + r": \d+")

    def test_pictures_for_learning(self):
        models = []
        for number in range(10):
            models.append(self.file(f"{number}.obj", "o thing\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 "
                                    f"{number + 1}\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n"))
        self.words_of("pictures_for_learning.py", str(self.folder / "out"), *models)
        examples = sorted(pathlib.Path(self.folder / "out").glob("*/*"))
        self.assertEqual(len(examples), 40)
        for example in examples[::7]:
            about = json.loads((example / "about.json").read_text())
            depth, ids = (numpy.load(example / f"{name}.npy") for name in ("depth", "object"))
            self.assertEqual((depth.shape, about["objects"]), ((256, 256), ["thing"]))
            numpy.testing.assert_array_equal(numpy.isfinite(depth), ids == 0)
            self.assertGreater((ids == 0).sum(), 1000)
            self.assertEqual((example / "color.png").read_bytes()[1:4], b"PNG")

    def test_its_dataset_takes_about_thirty_lines(self):
        lines = (CODE / "pictures_for_learning.py").read_text().splitlines()
        code = [line for line in lines if line.strip() and not line.startswith('"""')]
        self.assertLessEqual(len(code), 34)


if __name__ == "__main__":
    unittest.main()
