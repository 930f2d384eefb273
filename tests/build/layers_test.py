"""Holds each include of the sources against the tables: rooms of the engine, libraries of the house.

usage: layers_test.py <include root>
"""
import re
import sys
from fnmatch import fnmatchcase
from pathlib import Path

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include(?:_next)?[ \t]*(?:([<"])([^>"\n]*)[>"]|(\S.*))', re.M)
STANDARD = re.compile(r"[a-z_0-9]+")


def without_comments(text):
    return re.sub(r"//[^\n]*|/\*.*?\*/", lambda match: "\n" * match.group().count("\n"), text, flags=re.S)


class Table:
    """The rows of rooms.txt, section by section."""

    def __init__(self, path):
        self.rooms, self.exceptions, self.lent, self.system = {}, {}, {}, []
        sections = [self.add_room, self.add_exception, self.add_lent, self.add_system]
        for line in path.read_text(encoding="utf-8").splitlines():
            if line.startswith(("# file ", "# private header ", "# prefix ")):
                sections.pop(0)
            elif line and not line.startswith("#"):
                sections[0](line.split())

    def add_room(self, words):
        self.rooms[words[0]] = set(words[1:])

    def add_exception(self, words):
        if len(words) < 3:
            raise ValueError(f"an exception without a reason: {words}")
        self.exceptions[words[0], words[1]] = False

    def add_lent(self, words):
        self.lent[words[0]] = words[1:]

    def may_borrow(self, file, header):
        """Whether a file of another room may include a private header."""
        rooms = self.lent.get(header, []) + self.lent.get(header[:header.rindex("/") + 1], [])
        for pattern, borrowers in self.lent.items():
            if "*" in pattern and fnmatchcase(header, pattern):
                rooms = rooms + borrowers
        return "*" in rooms or any(file.startswith(room + "/") for room in rooms)

    def add_system(self, words):
        self.system.append((words[0], words[1:]))

    def room_of(self, path):
        """The room with the longest name that the file lies in; the roof's own files lie in none."""
        return max((room for room in self.rooms if path.startswith(room + "/")), key=len, default="")


def refuse_own(table, file, header, headers):
    """Why a file may not include one of the engine's headers, or nothing."""
    if header not in headers:
        return "no such header; write the path from the include root"
    if header in ("api.h", "fwd.h") or file == "orvex.h":
        return ""
    room, other = table.room_of(file), table.room_of(header)
    if room == other or other in table.rooms.get(room, set()):
        if "/private/" in header and room != other and not table.may_borrow(file, header):
            return f"{other} keeps it private"
        return ""
    if (file, header) in table.exceptions:
        table.exceptions[file, header] = True
        return ""
    return f"{room or 'the top'} does not stand on {other or 'the top'}"


def refuse_system(table, file, header):
    for prefix, rooms in table.system:
        if header.startswith(prefix):
            allowed = "*" in rooms or any(file.startswith(room + "/") for room in rooms)
            return "" if allowed else f"<{prefix}...> belongs to {' '.join(rooms)}"
    return "" if STANDARD.fullmatch(header) else "no room is allowed this header"


def includes_of(path):
    """(line, quote, header, what else stands there) for each include."""
    text = without_comments(path.read_text(encoding="utf-8"))
    for match in INCLUDE.finditer(text):
        yield text.count("\n", 0, match.start()) + 1, *match.groups()


def refuse_of_library(name, others, system, quote, header):
    """Why a library beside the engine may not include a header, or nothing."""
    library, slash, rest = header.partition("/")
    if library == name and slash:
        return ""
    if quote == '"':
        return f"write the path from the include root: {name}/..."
    if library in others and slash:
        return f"{library} keeps it private" if "private/" in rest else ""
    if STANDARD.fullmatch(header) or any(header.startswith(prefix) for prefix in system):
        return ""
    return f"{name} is not allowed this header"


def mistakes_of_libraries(root):
    """libraries.txt: a library a line, the libraries that it stands on, a bar, and the prefixes of the
    system's headers that it may include."""
    mistakes, count = [], 0
    for line in (root / "libraries.txt").read_text(encoding="utf-8").splitlines():
        if not line or line.startswith("#"):
            continue
        libraries, _, system = line.partition("|")
        name, *others = libraries.split()
        for path in sorted(path for path in (root / name).rglob("*") if path.suffix in (".h", ".cpp")):
            count += 1
            for number, quote, header, computed in includes_of(path):
                why = ("computed includes can't be checked" if computed else
                       refuse_of_library(name, others, system.split(), quote, header))
                if why:
                    mistakes.append(f"{path.relative_to(root)}:{number}: {header or computed}: {why}")
    return mistakes, count


def mistakes_of(root):
    engine = root / "orvex"
    table = Table(engine / "rooms.txt")
    files = sorted(path for path in engine.rglob("*") if path.suffix in (".h", ".cpp"))
    headers = {path.relative_to(engine).as_posix() for path in files if path.suffix == ".h"}
    mistakes = []
    for path in files:
        file = path.relative_to(engine).as_posix()
        for line, quote, header, computed in includes_of(path):
            if computed:
                why = "computed includes can't be checked"
            elif header.startswith("orvex/"):
                why = refuse_own(table, file, header[len("orvex/"):], headers)
            elif quote == '"':
                why = "write the path from the include root: orvex/..."
            else:
                why = refuse_system(table, file, header)
            if why:
                mistakes.append(f"{file}:{line}: {header or computed}: {why}")
        if table.room_of(file) == "" and "/" in file:
            mistakes.append(f"{file}: lies in no room of the table")
    mistakes += [f"rooms.txt: {file} no longer includes {header}"
                 for (file, header), used in table.exceptions.items() if not used]
    return mistakes, len(files)


def main(root):
    mistakes, count = mistakes_of(Path(root))
    more_mistakes, more = mistakes_of_libraries(Path(root))
    mistakes += more_mistakes
    count += more
    print(f"{count} files")
    print("\n".join(mistakes))
    return 1 if mistakes or not count else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
