"""The wheel, in a fresh virtual environment.

    wheel_test.py <cmake> <folder of the build>

Only there are the libraries those that the wheel carries.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

TESTS = pathlib.Path(__file__).resolve().parent
PYTHON = TESTS.parent.parent / "python"


def run(*command, **environment):
    """Runs a command, and answers what it says; its failure is ours."""
    strangers = {"PYTHONPATH", "ORVEX_LIBRARY", "LD_LIBRARY_PATH", "ORVEX_PLUGIN_PATH"}
    kept = {name: value for name, value in os.environ.items() if name not in strangers}
    done = subprocess.run([str(part) for part in command], env={**kept, **environment},
                          capture_output=True, text=True, check=False)
    if done.returncode != 0:
        sys.exit(f"{command} failed: {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def main(cmake, build, work):
    for component in ("runtime", "kit", "c", "c_dev"):
        run(cmake, "--install", build, "--prefix", work / "prefix", "--component", component)
    # What it is made of is copied: setuptools leaves files beside it.
    shutil.copytree(PYTHON, work / "source" / "python")
    shutil.copy(PYTHON.parent / "CMakeLists.txt", work / "source")
    run("env", "--chdir", work / "source" / "python", sys.executable, "setup.py", "-q",
        "bdist_wheel", "--dist-dir", work / "dist", ORVEX_PREFIX=str(work / "prefix"))
    (wheel,) = (work / "dist").glob("orvex-*-py3-none-linux_*.whl")
    run(sys.executable, "-m", "venv", "--system-site-packages", work / "venv")
    python = work / "venv" / "bin" / "python3"
    run(python, "-m", "pip", "install", "--no-deps", "--no-index", wheel)
    (work / "models").mkdir()
    said = run(python, TESTS / "shown.py", work / "models")
    if str(work / "venv") not in said:
        sys.exit(f"another module than the wheel's: {said}")
    for name in ("camera", "bad_input"):
        run(python, TESTS / f"{name}_test.py")
    loaded = run(python, "-c", "import orvex, re; print(*sorted(set(re.findall(r'/\\S*orvex\\S*\\.so"
                 "\\S*', open('/proc/self/maps').read()))))").split()
    strange = [path for path in loaded if not path.startswith(str(work / "venv"))]
    if strange or len(loaded) < 3:
        sys.exit(f"libraries that aren't the wheel's: {strange} of {loaded}")


with tempfile.TemporaryDirectory() as folder:
    main(sys.argv[1], sys.argv[2], pathlib.Path(folder).resolve())
