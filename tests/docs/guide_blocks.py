"""Every block of C++, C or Python in a page of the guide stands in the programs that the page names.

    guide_blocks.py docs/guide

A page names its programs in a comment, "<!-- code: a.cpp b.cpp -->", relative to the page. A block
may be indented less than in the program, by the same for all of its lines. Blocks of Python count in
pages of such programs; elsewhere they are asides.
"""
import pathlib
import re
import sys
import textwrap

CODE = re.compile(r"<!-- code: ([^>]*?) -->")
BLOCK = re.compile(r"^```(?:c|cpp)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
PYTHON_BLOCK = re.compile(r"^```python\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def stands_in(block, program):
    """Whether the lines of the block follow each other in the program."""
    wanted = textwrap.dedent(block).splitlines()
    lines = program.splitlines()
    return any(
        textwrap.dedent("\n".join(lines[at:at + len(wanted)])).splitlines() == wanted
        for at in range(len(lines) - len(wanted) + 1))


def mistakes_of(page):
    text = page.read_text()
    blocks = BLOCK.findall(text)
    named = CODE.search(text)
    if named and ".py" in named.group(1):
        blocks += PYTHON_BLOCK.findall(text)
    if not blocks:
        return []
    if not named:
        return [f"{page.name}: names no program"]
    programs = [(page.parent / name).read_text() for name in named.group(1).split()]
    return [f"{page.name}: in no program:\n{block}" for block in blocks
            if not any(stands_in(block, program) for program in programs)]


def main():
    pages = sorted(pathlib.Path(sys.argv[1]).glob("*.md"))
    mistakes = [mistake for page in pages for mistake in mistakes_of(page)]
    print("\n".join(mistakes) or f"{len(pages)} pages")
    return 1 if mistakes or not pages else 0


sys.exit(main())
