"""Each public header stands on the standard library and other public headers. All together compile as
C++17 and C++20, with each compiler, with and without type information, behind and before the headers of
other libraries that define macros, and beside a host's own headers of the same names. That each compiles
alone is held by the build.

usage: headers_test.py <work folder> <include folder> <compiler>... -- <header>...
"""
import itertools
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

FLAGS = ["-x", "c++", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", "-"]
# The system's own types of threads are in signatures.
SYSTEM = {"<sys/types.h>"}
# What a host may include first: all of these define macros or names in the global namespace.
FIRST = [["linux/input.h"], ["X11/Xlib.h", "X11/Xutil.h"], ["GL/gl.h", "GL/glext.h"],
         ["EGL/egl.h", "EGL/eglext.h"], ["GLFW/glfw3.h"], ["SDL2/SDL.h", "SDL2/SDL_syswm.h"]]
# What a host may have below its own include root. Whoever includes one of these by mistake is told so.
OWN = ["api.h", "fwd.h", "math/vec3.h", "renderer/renderer.h", "scene/node.h",
       "scene/camera.h", "base/log.h", "kernel/kernel.h"]


def foreign_includes(text, headers):
    """Includes that are neither of the standard library, which has no suffixes, nor public."""
    lines = re.findall(r"^\s*#\s*include\s+(.*?)\s*(?://.*)?$", text, flags=re.M)
    known = {f'"{header}"' for header in headers} | {f"<{header}>" for header in headers} | SYSTEM
    return [line for line in lines if line not in known and not re.fullmatch(r"<[a-z_]+>", line)]


def make_host(folder):
    """A host's include root, with headers that bear the names of the engine's."""
    for name in OWN:
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text('#error "the host\'s own header was taken for the engine\'s"\n', encoding="utf-8")
    return folder


def include_all(names):
    return "".join(f"#include <{name}>\n" for name in names)


def compile_text(name, command, text):
    result = subprocess.run(command, text=True, input=text, capture_output=True, check=False)
    if result.returncode != 0 or result.stderr:
        return [f"{name}: {' '.join(command)}:\n{result.stderr}"]
    return []


def jobs(compilers, include, host):
    """(name, command, source text) for each compilation."""
    umbrella = include_all(["orvex/orvex.h", "orvex_kit/kit.h"])
    for compiler, standard in itertools.product(compilers, ("17", "20")):
        flags = [f"-std=c++{standard}", f"-I{host}", f"-I{include}", *FLAGS]
        yield "all, without type information and exceptions", [
            compiler, "-fno-rtti", "-fno-exceptions", *flags], umbrella
        # One standard each: what a macro breaks, it breaks in both.
        for first in FIRST if (standard == "17") == (compiler == compilers[0]) else []:
            yield f"all behind <{first[0]}>", [compiler, *flags], include_all(first) + umbrella
        everything = include_all(itertools.chain(*FIRST))
        yield "all behind all of them", [compiler, *flags], everything + umbrella
        yield "all before all of them", [compiler, *flags], umbrella + everything


def main(work, include, compilers, headers):
    host = make_host(Path(work) / "host")
    mistakes = []
    for header in headers:
        text = Path(include, header).read_text(encoding="utf-8")
        mistakes += [f"{header}: foreign include {line}" for line in foreign_includes(text, headers)]
    todo = list(jobs(compilers, include, host))
    with ThreadPoolExecutor(2) as pool:
        for result in pool.map(lambda job: compile_text(*job), todo):
            mistakes += result
    print(f"{len(headers)} headers, {len(todo)} compilations")
    print("\n".join(mistakes))
    return 1 if mistakes or not headers or not compilers else 0


if __name__ == "__main__":
    dashes = sys.argv.index("--")
    sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3:dashes], sys.argv[dashes + 1:]))
