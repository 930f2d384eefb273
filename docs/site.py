#!/usr/bin/env python3
"""Writes what Doxygen reads in place of pages and headers, so that guide and reference are one site.

    site.py FILES FOLDER

FILES is a file with a path on each line, FOLDER what the copies go to, each by its place in the tree.

In pages, names of classes and operations lead to the reference, lists of pages become branches of the
tree at the left, and each page of the guide ends with the one that follows. In headers, a class that a
page tells of leads to that page. The files themselves stay as people read them.
"""
import re
import sys
from pathlib import Path

DOCS = Path(__file__).resolve().parent
TREE = DOCS.parent
SOURCES = TREE / "src"
GUIDE = DOCS / "guide"

FENCE = re.compile(r"^\s*```")
SPAN = re.compile(r"(?<![\[`])`([^`\n]+)`(?!`)")
NAME = re.compile(r"(?:(?:orvex|kit|aux|core)::)*\w+(?:::\w+)*")
TELLS = re.compile(r"^<!-- tells of: (.*) -->$", re.M)
IMAGE = re.compile(r"(!\[[^\]]*\])\((?:[^()\s]*/)?([^()/\s]+)\)")
PAGE_LINK = re.compile(r"\[([^\]]+)\]\(((?:\w+/)*\w+)\.md\)")
CLASS = re.compile(r"^(?:class|struct|enum class|enum) (?:ORVEX_\w+ |\[\[\w+\]\] )?(\w+)(?![^;{]*;)")
FUNCTION = re.compile(r"^ORVEX_KIT_API [\w:<>,&* ]*?(\w+)\(")
ALIAS = re.compile(r"^using (\w+) =")
NAMESPACE = re.compile(r"^namespace ((?:\w+::)*\w+) \{")


def page_id(stem):
    """What Doxygen calls a page of the guide, by its place in the tree."""
    return f"md_docs_{stem.replace('/', '_')}"


def title_of(page):
    return re.search(r"^# (.*)", page.read_text(), re.M).group(1)


def pages_in_order(part="# A guide for newcomers"):
    """The pages of the guide, or of one of its parts, as its list of contents has them."""
    level = part.split()[0]
    text = (GUIDE / "README.md").read_text() + f"\n{level} "
    listed = text[text.index(part):].split(f"\n{level} ", 1)[0]
    return [stem for _, stem in PAGE_LINK.findall(listed)]


def names_of_header(header):
    """Everything of a header that a page may lead to, by its whole name."""
    scope = ""
    for line in header.read_text().splitlines():
        opened = NAMESPACE.match(line)
        scope = opened.group(1) if opened else scope
        named = CLASS.match(line) or FUNCTION.match(line) or ALIAS.match(line)
        if named and scope:
            yield f"{scope}::{named.group(1)}"


def public_names():
    """Whole names, and the texts of the headers that have them."""
    names = {}
    for header in sorted(SOURCES.rglob("*.h")):
        if "private" not in header.parts:
            for name in names_of_header(header):
                names.setdefault(name, header.read_text())
    return names


class Linker:
    """Leads from a word of a page to the reference."""

    names = public_names()

    def __init__(self, of_kit):
        # Both libraries have a Model: on pages of the kit it is the kit's.
        self.scopes = ["", "orvex::", "orvex::kit::"]
        if of_kit:
            self.scopes = ["", "orvex::kit::", "orvex::"]
        self.scopes.append("orvex::aux::")

    def target_of(self, word):
        for scope in self.scopes:
            if scope + word in self.names:
                return scope + word
        owner, _, member = word.rpartition("::")
        if not owner or not (target := self.target_of(owner)):
            return None
        is_there = re.search(rf"\b{member}\(", self.names[target])
        return f"{target}::{member}" if is_there else target

    def linked(self, span):
        word = span.group(1).removesuffix("()")
        target = NAME.fullmatch(word) and self.target_of(word)
        # A word in small letters alone is a name of anything.
        if not target or (word.islower() and "_" not in word):
            return span.group(0)
        return f'<code>\\ref {target} "{span.group(1)}"</code>'


def told_by(page):
    """The classes that a page says it tells of: their readers are led to it."""
    said = TELLS.search(page.read_text())
    return said.group(1).split() if said else []


def with_branches(line, folder):
    """The pages that a list names as branches of the tree."""
    def branch(link):
        stem = (folder / link.group(2)).resolve().relative_to(DOCS).as_posix()
        return f'\\subpage {page_id(stem)} "{link.group(1)}"'

    return PAGE_LINK.sub(branch, line)


def steps_from(page):
    """The line at the end of a page that leads on, and to the classes that it tells of."""
    pages = pages_in_order()
    if page.parent != GUIDE or page.stem not in pages:
        return ""
    at = pages.index(page.stem)
    steps = [f"{word} [{title_of(GUIDE / (pages[i] + '.md'))}]({pages[i]}.md)"
             for word, i in (("Before:", at - 1), ("Next:", at + 1)) if 0 <= i < len(pages)]
    told = [f'\\ref orvex::{name} "{name}"' for name in told_by(page)]
    if told:
        steps.append("Reference: " + ", ".join(told))
    return f'\n<div class="steps">{" · ".join(steps)}</div>\n'


def of_page(page):
    stem = page.stem
    of_kit = stem == "mainpage" or page.parent == GUIDE and (
        stem == "README" or stem in pages_in_order("## The kit"))
    linker = Linker(of_kit)
    lists_pages = stem in ("mainpage", "README")
    in_code = False
    lines = []
    for line in page.read_text().splitlines():
        if line.startswith(("<!-- code:", "<!-- tells of:")):
            continue
        in_code ^= bool(FENCE.match(line))
        if not in_code and not line.startswith(("#", "    ")):
            line = SPAN.sub(linker.linked, IMAGE.sub(r"\1(\2)", line))
            line = with_branches(line, page.parent) if lists_pages else line
        lines.append(line)
    return "\n".join(lines) + "\n" + steps_from(page)


def pages_that_tell():
    """For each class by its whole name the pages that tell of it."""
    pages = {}
    for stem in pages_in_order():
        for name in told_by(GUIDE / (stem + ".md")):
            pages.setdefault("orvex::" + name, []).append(stem)
    return pages


def of_header(header, told=pages_that_tell()):
    scope = ""
    lines = []
    for line in header.read_text().splitlines():
        opened = NAMESPACE.match(line)
        scope = opened.group(1) if opened else scope
        named = CLASS.match(line)
        stems = told.get(f"{scope}::{named.group(1)}", []) if named else []
        if stems:
            links = ", ".join(f'@ref {page_id("guide/" + stem)} "{title_of(GUIDE / (stem + ".md"))}"'
                              for stem in stems)
            # Behind the class's own words, which a template's line parts from its name.
            at = len(lines) - (1 if lines[-1].startswith("template<") else 0)
            lines.insert(at, f"/// @par In the guide\n/// {links}")
        lines.append(line)
    return "\n".join(lines) + "\n"


def main(files, folder):
    for name in Path(files).read_text(encoding="utf-8").split("\n"):
        file = Path(name)
        copy = Path(folder) / file.relative_to(TREE)
        copy.parent.mkdir(parents=True, exist_ok=True)
        text = of_page(file) if file.suffix == ".md" else of_header(file)
        copy.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
