"""Makes the wheel: the module, its declarations, and the libraries that it calls.

The libraries come from an installed tree, which ORVEX_PREFIX names:

    cmake --install build/release --prefix /tmp/orvex
    ORVEX_PREFIX=/tmp/orvex python3 setup.py bdist_wheel --dist-dir out

Without it the module has none of its own, and takes those of the system.
"""

import glob
import os
import re
import shutil
import sys

from setuptools import setup
from setuptools.command.build_py import build_py
from setuptools.dist import Distribution

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)

from declare import write  # noqa: E402  pylint: disable=wrong-import-position

PREFIX = os.environ.get("ORVEX_PREFIX", "")
HEADER = os.path.join(PREFIX, "include/orvex_c/orvex.h") if PREFIX else os.path.join(
    HERE, "../src/orvex_c/orvex.h")


def version():
    """The project's version."""
    with open(os.path.join(HERE, "../CMakeLists.txt"), encoding="utf-8") as project:
        return re.search(r"project\(orvex VERSION (\S+)", project.read()).group(1)


def libraries():
    """The libraries of the tree, by the names that programs load, and the plugins below them."""
    folder = os.path.dirname(next(iter(
        glob.glob(os.path.join(PREFIX, "lib*/**/liborvex_c.so.0"), recursive=True)), ""))
    if not folder:
        sys.exit(f"no liborvex_c.so.0 below {PREFIX}")
    names = ["liborvex_c.so.0", *(
        os.path.basename(path) for pattern in ("liborvex_kit.so.?.?", "liborvex_r_osx.so.?.?",
                                               "lib3ds-?.so")
        for path in glob.glob(os.path.join(folder, pattern)))]
    plugins = glob.glob(os.path.join(folder, "orvex/plugins/*.so"))
    return folder, names + [os.path.relpath(plugin, folder) for plugin in plugins]


class Build(build_py):
    """Adds the declarations and the libraries."""

    def run(self):
        super().run()
        package = os.path.join(self.build_lib, "orvex")
        write(HEADER, os.path.join(package, "_declarations.py"))
        if not PREFIX:
            return
        folder, names = libraries()
        for name in names:
            target = os.path.join(package, "lib", name)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copy(os.path.join(folder, name), target)  # what a link leads to


class WithLibraries(Distribution):
    """It belongs to a platform, though nothing in it to a version of Python."""

    def has_ext_modules(self):
        return bool(PREFIX)


commands = {"build_py": Build}
try:
    from wheel.bdist_wheel import bdist_wheel
except ImportError:
    pass
else:
    class Wheel(bdist_wheel):
        """For every Python 3 on this platform."""

        def get_tag(self):
            return "py3", "none", super().get_tag()[2] if PREFIX else "any"

    commands["bdist_wheel"] = Wheel

setup(version=version(), packages=["orvex"], package_data={"orvex": ["py.typed"]},
      distclass=WithLibraries, cmdclass=commands, zip_safe=False)
