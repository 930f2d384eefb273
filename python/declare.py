"""Makes the declarations that the module calls the C library by from the library's header.

    declare.py path/to/orvex.h path/to/_declarations.py

The module loads the library without a compiler. What it needs to know of it is worked out here,
so that a program's start doesn't wait for it. Wants cffi.
"""

from __future__ import annotations

import re
import sys

import cffi


def declarations_of(header: str) -> str:
    """The part of a header that cffi reads: no comments, no preprocessor, no marks for export."""
    text = re.sub(r"//[^\n]*|/\*.*?\*/", "", header, flags=re.DOTALL)
    text = re.sub(r"^#ifdef __cplusplus$.*?^#endif$", "", text, flags=re.DOTALL | re.MULTILINE)
    text = re.sub(r"^#[^\n]*$", "", text, flags=re.MULTILINE)
    text = text.replace("ORVEX_C_API ", "")
    return re.sub(r"\n\s*\n+", "\n", text).strip() + "\n"


def functions_of(declarations: str) -> list[str]:
    """The names of the operations that are declared, in their order."""
    return re.findall(r"^[\w *]+[ *](orvex_\w+)\(", declarations, flags=re.MULTILINE)


def write(header_path: str, module_path: str) -> None:
    """Writes the declarations of a header as a Python module."""
    with open(header_path, encoding="utf-8") as header:
        declarations = declarations_of(header.read())
    ffi = cffi.FFI()
    ffi.cdef(declarations)
    ffi.set_source("orvex._declarations", None)
    ffi.emit_python_code(module_path)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    write(sys.argv[1], sys.argv[2])
