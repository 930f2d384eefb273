"""What the tests share: models, and Python programs of their own."""

import os
import pathlib
import subprocess
import sys
import tempfile
import textwrap
import unittest

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
DATA = TOP / "examples" / "data"
LIGHTHOUSE = str(DATA / "lighthouse.obj")

# A square of two triangles in z = 0, from -1 to 1.
SQUARE = [[-1.0, -1.0, 0.0], [1.0, -1.0, 0.0], [1.0, 1.0, 0.0], [-1.0, 1.0, 0.0]]
FACES = [[0, 1, 2], [0, 2, 3]]


def run_python(program, *arguments, **environment):
    """Runs a Python program of its own; answers what `subprocess.run` does."""
    return subprocess.run(
        [sys.executable, "-W", "error", "-c", textwrap.dedent(program), *arguments],
        capture_output=True, text=True, timeout=100, check=False,
        env={**os.environ, **environment})


class FolderTest(unittest.TestCase):
    """A test with an empty folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def file(self, name, content=""):
        """Writes a file, and tells its path."""
        path = self.folder / name
        path.write_text(content)
        return str(path)
