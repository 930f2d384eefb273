"""Holds the header of forward declarations against the definitions.

usage: forward_test.py <compiler> <include folder>

A declaration in another namespace than its class is a class that nobody ever defines: it compiles, and
fails at the first host that uses it.
"""
import re
import subprocess
import sys
from pathlib import Path

SCOPE = re.compile(r"namespace (\w+) \{|(\} // namespace)|^(?:class|struct|enum(?: class)?) (\w+)\b[^{]*?;", re.M)


def names_of(text):
    """Every name that is declared, with its namespaces."""
    scopes = []
    for opened, closed, name in SCOPE.findall(text):
        if opened:
            scopes.append(opened)
        elif closed:
            scopes.pop()
        else:
            yield "::".join([*scopes, name])


def main(compiler, include):
    names = list(names_of(Path(include, "orvex/fwd.h").read_text(encoding="utf-8")))
    source = "#include <orvex/fwd.h>\n#include <orvex/orvex.h>\n" + "".join(
        f'static_assert(sizeof({name}) > 0, "");\n' for name in names)
    result = subprocess.run([compiler, f"-I{include}", "-x", "c++", "-std=c++17", "-fsyntax-only", "-"],
                            input=source, text=True, capture_output=True, check=False)
    print(f"{len(names)} declarations")
    print(result.stderr)
    return 1 if result.returncode or not names else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2]))
