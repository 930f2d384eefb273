"""Each public header stands on the standard library and other public headers, and compiles alone.

usage: headers_test.py <compiler> <include folder> <header>...
"""
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

FLAGS = ["-x", "c++", "-std=c++17", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only"]
# The system's own types of threads are in signatures.
SYSTEM = {"<sys/types.h>"}


def foreign_includes(text, headers):
    """Includes that are neither of the standard library, which has no suffixes, nor public."""
    lines = re.findall(r"^\s*#\s*include\s+(.*?)\s*(?://.*)?$", text, flags=re.M)
    known = {f'"{header}"' for header in headers} | SYSTEM
    return [line for line in lines if line not in known and not re.fullmatch(r"<[a-z_]+>", line)]


def check(header, compiler, folder, headers):
    with open(f"{folder}/{header}", encoding="utf-8") as file:
        mistakes = [f"{header}: foreign include {line}"
                    for line in foreign_includes(file.read(), headers)]
    result = subprocess.run([compiler, *FLAGS, f"-I{folder}", "-"], text=True,
                            input=f"#include <{header}>\n", capture_output=True, check=False)
    if result.returncode != 0 or result.stderr:
        mistakes.append(f"{header} doesn't compile alone:\n{result.stderr}")
    return mistakes


def main(compiler, folder, headers):
    with ThreadPoolExecutor(2) as pool:
        results = pool.map(lambda header: check(header, compiler, folder, headers), headers)
        mistakes = [mistake for result in results for mistake in result]
    print(f"{len(headers)} headers")
    print("\n".join(mistakes))
    return 1 if mistakes or not headers else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3:]))
