"""Every operation that the library for C exports is called in its tests, is declared by the header, and has
the version in which it came; and neither one that once was exported is gone, nor a constant another number.
The examples in the header compile.

usage: covered_test.py <C compiler> <library> <header> <list of the exports> <test source>...

The list has a line for each, "name@@VERSION" or "NAME=number". What is new has to be put there; what stands there stays.
"""
import re
import subprocess
import sys
from pathlib import Path


def exports_of(library):
    lines = subprocess.run(["nm", "-D", "--defined-only", "--with-symbol-versions", library], check=True,
                           capture_output=True, text=True).stdout.splitlines()
    return {line.split()[-1] for line in lines if line.split()[-2] != "A"}


def mistakes_in_examples(compiler, header, text):
    examples = re.findall(r"^/// @code\n(.*?)^/// @endcode", text, flags=re.M | re.S)
    bodies = [re.sub(r"^///[ ]?", "", example, flags=re.M) for example in examples]
    source = f'#include "{header}"\n#include <stdio.h>\n' + "".join(
        f"void example_{number}(void);\nvoid example_{number}(void) {{\n{body}}}\n"
        for number, body in enumerate(bodies))
    result = subprocess.run([compiler, "-std=c99", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only",
                             "-x", "c", "-"], input=source, text=True, capture_output=True, check=False)
    return [result.stderr] if result.returncode or not examples else []


def main(compiler, library, header, kept, sources):
    exports = exports_of(library)
    names = {export.partition("@")[0] for export in exports}
    told = Path(header).read_text(encoding="utf-8")
    declared = set(re.findall(r"^ORVEX_C_API[^;]*?\b(orvex_\w+)\(", told, flags=re.M))
    text = "".join(Path(source).read_text(encoding="utf-8") for source in sources)
    called = set(re.findall(r"\b(orvex_\w+)\(", text))
    listed = set(Path(kept).read_text(encoding="utf-8").split())
    mistakes = [f"no test calls it: {name}" for name in sorted(names - called)]
    mistakes += [f"exported, but not declared: {name}" for name in sorted(names - declared)]
    mistakes += [f"declared, but not exported: {name}" for name in sorted(declared - names)]
    exports |= {f"{name}={number}" for name, number in re.findall(r"^\s+(ORVEX_\w+) = (\d+)", told, flags=re.M)}
    mistakes += [f"gone: {export}" for export in sorted(listed - exports)]
    mistakes += [f"new, to be put into {kept}: {export}" for export in sorted(exports - listed)]
    mistakes += mistakes_in_examples(compiler, header, told)
    print(f"{len(names)} operations")
    print("\n".join(mistakes))
    return 1 if mistakes or not names else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3], sys.argv[4], sys.argv[5:]))
