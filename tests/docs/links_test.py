"""Every relative link and picture of the pages that people read in the source tree leads somewhere.

usage: links_test.py <source tree>
"""
import re
import sys
from pathlib import Path

LINK = re.compile(r"\]\(([^()\s]+)\)")
HEADING = re.compile(r"^#+ (.*?)(?: \{#[\w-]+\})?$", re.M)
CODE = re.compile(r"^```.*?^```$|`[^`\n]*`", re.M | re.S)


def place_of(heading):
    """The place that a heading gets where such pages are shown."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def mistakes_of(page):
    text = page.read_text(encoding="utf-8")
    for link in LINK.findall(CODE.sub("", text)):
        name, _, place = link.partition("#")
        target = page.parent / name if name else page
        if re.match(r"\w+:", link) or link.startswith("@ref"):
            continue
        if not target.is_file():
            yield f"{page.name}: nothing is at {link}"
        elif place and place not in map(place_of, HEADING.findall(target.read_text(encoding="utf-8"))):
            yield f"{page.name}: {name or page.name} has no heading for {link}"


def main(tree):
    pages = sorted([*Path(tree).glob("*.md"), *Path(tree, "docs").rglob("*.md")])
    mistakes = [mistake for page in pages for mistake in mistakes_of(page)]
    listed = LINK.findall(Path(tree, "docs/guide/README.md").read_text(encoding="utf-8"))
    mistakes += [f"README.md of the guide lists {page.name} {listed.count(page.name)} times"
                 for page in Path(tree, "docs/guide").glob("*.md")
                 if page.name != "README.md" and listed.count(page.name) != 1]
    print("\n".join(mistakes) or f"{len(pages)} pages")
    return 1 if mistakes or not pages else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
