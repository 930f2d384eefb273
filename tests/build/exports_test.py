"""Compares what the shared library exports with what the public headers mark as exported.

usage: exports_test.py [--unloadable] [--without=<class>] [--mark=<macro>] <shared library> <folder of the headers> <header>...

--unloadable: nothing that is exported may keep the library mapped after dlclose, either.
--without: a class that this build leaves out.
--mark: what the headers mark with, unless it is ORVEX_API.
"""
import re
import subprocess
import sys

# Marked for the plugins that define them, which the library looks up.
DEFINED_BY_PLUGINS = {"orvex_create_plugin", "orvex_destroy_plugin"}

# Marked, but all of them is inline.
INLINE = {"FaceU16", "FaceU32", "Vertex", "Vertex_32", "Vertex_64", "Vertex_PhysXCloth", "vec2",
          "vec3", "vec3u8", "vec4d", "vec4i", "vec4u8"}


def without_comments(text):
    return re.sub(r"//[^\n]*|/\*.*?\*/|^#.*?$", "", text, flags=re.S | re.M)


def below_the_engine(namespaces, name):
    inner = "::".join([name for name, _ in namespaces] + [name])
    return inner.removeprefix("orvex::")


def marked_in(text, mark):
    """The classes, and the functions and variables, that a header marks, with their namespaces below
    the engine's."""
    classes, functions = set(), set()
    namespaces = []
    depth = 0
    token = re.compile(r"namespace\s+([\w:]+)\s*\{|[{}]|(?:class|struct)\s+" + mark + r"\s+(\w+)\s*([;:{])|"
                       r"\b" + mark + r"\s[^;{()]*?\b(operator<<|\w+)\s*[(;]")
    for match in token.finditer(text):
        namespace, record, follows, function = match.groups()
        if namespace:
            namespaces.append((namespace, depth))
            depth += 1
        elif record:
            depth += follows == "{"
            if follows != ";":
                classes.add(below_the_engine(namespaces, record))
        elif function:
            functions.add(below_the_engine(namespaces, function))
        elif match.group() == "{":
            depth += 1
        else:
            depth -= 1
            while namespaces and namespaces[-1][1] == depth:
                namespaces.pop()
    return classes, functions


def names_in(mangled):
    """The parts of a mangled name below the engine's namespace, up to the first that isn't plain."""
    match = re.match(r"_Z(?:T[ISTV]|T[hv][n0-9_]*_|GV)?NK?5orvex", mangled)
    if not match:
        return []
    if mangled.startswith("ls", match.end()):
        return ["operator<<"]
    names, at = [], match.end()
    while length := re.compile(r"\d+").match(mangled, at):
        at = length.end() + int(length.group())
        names.append(mangled[length.end():at])
    return names


def exported_by(library):
    lines = subprocess.run(["nm", "-D", "--defined-only", "--no-demangle", library], check=True,
                           capture_output=True, text=True).stdout.splitlines()
    return [line.split()[-1] for line in lines]


def unique_in(library):
    """Symbols of which a process keeps one, and with it the library, even after dlclose."""
    lines = subprocess.run(["nm", "-D", "--defined-only", library], check=True,
                           capture_output=True, text=True).stdout.splitlines()
    return [line.split()[-1] for line in lines if line.split()[-2] == "u"]


def main(unloadable, without, mark, library, folder, headers):
    classes, functions = set(), set()
    for header in headers:
        with open(f"{folder}/{header}", encoding="utf-8") as file:
            more_classes, more_functions = marked_in(without_comments(file.read()), mark)
        classes |= more_classes
        functions |= more_functions - DEFINED_BY_PLUGINS

    classes -= without
    inline = INLINE if mark == "ORVEX_API" else set()

    seen_classes, seen_functions, strangers = set(), set(), []
    for symbol in exported_by(library):
        names = names_in(symbol)
        of_a_class = classes & {"::".join(names[:length]) for length in (1, 2)}
        if of_a_class:
            seen_classes |= of_a_class
        elif "::".join(names) in functions:
            seen_functions.add("::".join(names))
        else:
            strangers.append(symbol)

    mistakes = [f"exported, but no header marks it: {name}" for name in sorted(strangers)]
    mistakes += [f"marked, but not exported: {name}"
                 for name in sorted((classes - seen_classes - inline) | (functions - seen_functions))]
    mistakes += [f"listed as inline, but it isn't: {name}"
                 for name in sorted(inline & seen_classes | inline - classes)]
    if unloadable:
        mistakes += [f"exported as unique: {name}" for name in unique_in(library)]
    print(f"{len(seen_classes)} classes and {len(seen_functions)} functions and variables are exported")
    print("\n".join(mistakes))
    if not classes or not functions:
        mistakes.append("no header marks anything")
    return 1 if mistakes else 0


if __name__ == "__main__":
    options = [word for word in sys.argv[1:] if word.startswith("--")]
    words = [word for word in sys.argv[1:] if not word.startswith("--")]
    without = {word.removeprefix("--without=") for word in options if word.startswith("--without=")}
    mark = next((word.removeprefix("--mark=") for word in options if word.startswith("--mark=")), "ORVEX_API")
    sys.exit(main("--unloadable" in options, without, mark, words[0], words[1], words[2:]))
