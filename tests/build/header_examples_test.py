"""Compiles each example that stands in the comment of a public header.

usage: header_examples_test.py <compiler> <include folder> <surroundings> <header>...
"""
import re
import subprocess
import sys
from pathlib import Path

EXAMPLE = re.compile(r"^[ ]*/// @code\n(.*?)^[ ]*/// @endcode", re.M | re.S)
FLAGS = ["-x", "c++", "-std=c++17", "-fsyntax-only", "-Wall", "-Werror=unused-result", "-Wno-unused",
         "-Wno-unused-variable", "-"]


def examples_of(path):
    """(line, code) for each example; dots that stand for what the host does are taken away."""
    text = path.read_text(encoding="utf-8")
    for match in EXAMPLE.finditer(text):
        code = re.sub(r"^[ ]*///[ ]?", "", match.group(1), flags=re.M)
        code = re.sub(r"^([ ]*)(?:\.\.\.|…)$", r"\1;", code, flags=re.M)
        yield text.count("\n", 0, match.start()) + 2, code.replace("{ … }", "{}")


def source_of(headers, include, surroundings):
    parts = [f'#include "{surroundings}"\nnamespace host {{\n']
    number = 0
    for header in headers:
        for line, code in examples_of(Path(include, header)):
            number += 1
            place = f'#line {line} "{header}"\n'
            if 'extern "C"' in code:
                parts.append(f"{place}{code}")
            else:
                parts.append(f"void example_{number}() {{\n{place}{code}}}\n")
    return number, "".join(parts) + "}\n"


def main(compiler, include, surroundings, headers):
    count, source = source_of(headers, include, surroundings)
    result = subprocess.run([compiler, f"-I{include}", *FLAGS], input=source, text=True,
                            capture_output=True, check=False)
    print(f"{count} examples")
    print(result.stderr)
    return 1 if result.returncode or not count else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3], sys.argv[4:]))
