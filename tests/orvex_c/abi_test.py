"""Compares what programs in C are built against, the types and the operations of the header, with what it
was: nothing of that may change, and what comes to it is kept from then on.

usage: abi_test.py [--write] <C compiler> <header> <version script> <description kept> <work folder>

--write keeps the description of today, unless programs built against the old one wouldn't run any more.
"""
import re
import subprocess
import sys
from pathlib import Path

OPERATION = re.compile(r"^ORVEX_C_API ([^;]*?\borvex_\w+\([^;]*\));", re.M)
INCOMPATIBLE = 8  # a bit of the answer of abidiff


def stubs_of(header):
    """A library of the header's operations, without what they do: it has their types, which the compiler
    holds the true one to."""
    operations = OPERATION.findall(Path(header).read_text(encoding="utf-8"))
    return f'#include "{header}"\n' + "".join(f"{operation} {{ return 0; }}\n" for operation in operations)


def build(compiler, header, script, work):
    library = Path(work) / "liborvex_c_stubs.so"
    subprocess.run([compiler, "-std=c99", "-g", "-O0", "-w", "-shared", "-fPIC", "-x", "c", "-",
                    f"-Wl,--version-script={script}", "-Wl,-soname,liborvex_c.so.0", "-o", library],
                   input=stubs_of(header), text=True, check=True)
    return library


def describe(library):
    description = Path(library).with_suffix(".abi")
    subprocess.run(["abidw", "--no-show-locs", "--no-corpus-path", "--no-comp-dir-path", "--out-file",
                    description, library], check=True)
    return description.read_text(encoding="utf-8")


def main(is_to_write, compiler, header, script, kept, work):
    Path(work).mkdir(parents=True, exist_ok=True)
    library = build(compiler, header, script, work)
    answer = subprocess.run(["abidiff", kept, library], text=True, capture_output=True,
                            check=False) if Path(kept).exists() else None
    if answer:
        print(answer.stdout + answer.stderr)
    if is_to_write:
        if answer and answer.returncode & INCOMPATIBLE:
            print("programs built against the old one wouldn't run any more: it isn't written")
            return 1
        Path(kept).write_text(describe(library), encoding="utf-8")
        return 0
    return 0 if answer and answer.returncode == 0 else 1


if __name__ == "__main__":
    words = [word for word in sys.argv[1:] if word != "--write"]
    sys.exit(main("--write" in sys.argv, *words))
