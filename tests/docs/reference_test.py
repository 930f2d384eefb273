"""Builds the site without one warning, and follows every link and every picture in it.

usage: reference_test.py <python> <doxygen> <folder of the Doxyfile> <folder of the documentation>
"""
import html
import importlib.util
import re
import shutil
import subprocess
import sys
from pathlib import Path
from urllib.parse import unquote

LINK = re.compile(r'(?:href|src)="([^"]*)"')
PLACE = re.compile(r'\b(?:id|name)="([^"]+)"')


def build(python, doxygen, folder, docs):
    """Whether no step of the target `docs` has a warning."""
    # Of what is no longer documented no page stays.
    shutil.rmtree(Path(folder) / "html", ignore_errors=True)
    steps = [[python, docs / "site.py", "documented.txt", "sources"], [doxygen, "Doxyfile"]]
    return all(subprocess.run(step, cwd=folder, check=False).returncode == 0 for step in steps)


class Site:
    """All pages, with the places that links may lead to."""

    def __init__(self, folder):
        self.folder = folder
        self.texts = {page: page.read_text(encoding="utf-8") for page in sorted(folder.glob("*.html"))}
        self.places = {page: set(PLACE.findall(text)) for page, text in self.texts.items()}

    def has(self, page, link):
        name, _, place = unquote(html.unescape(link)).partition("#")
        target = self.folder / name if name else page
        if place and target in self.places:
            return place in self.places[target]
        return target.is_file()

    def broken_links(self):
        for page, text in self.texts.items():
            for link in set(LINK.findall(text)):
                # Doxygen names a section of nested classes where all of them are private, too.
                is_passed_over = re.match(r"(?:\w+:|#nested-classes$|#$|$)", link)
                if not is_passed_over and not self.has(page, link):
                    yield f"{page.name}: nothing is at {link}"


def mistakes_of_guide(site, docs):
    """Pages that aren't there, aren't called as their source is, or lead to no class."""
    for source in sorted((docs / "guide").glob("*.md")):
        page = site.folder / f"md_docs_guide_{source.stem}.html"
        text = site.texts.get(page)
        if text is None:
            yield f"{source.name} has no page {page.name}"
            continue
        title = re.search(r"^# (.*)", source.read_text(encoding="utf-8"), re.M).group(1)
        if f"<title>orvex: {title}".replace("'", "&#39;") not in text:
            yield f"{page.name} is not called {title}"
        if source.stem != "README" and 'href="classorvex' not in text:
            yield f"{page.name} leads to no class"


def mistakes_of_classes(site, docs):
    """Classes that a page tells of, and that don't lead to it."""
    spec = importlib.util.spec_from_file_location("site", docs / "site.py")
    of_docs = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(of_docs)
    for name, stems in of_docs.pages_that_tell().items():
        file = f"{name.replace('::', '_1_1')}.html"
        text = "".join(site.texts.get(site.folder / (kind + file), "") for kind in ("class", "struct"))
        for stem in stems:
            if f'href="md_docs_guide_{stem}.html"' not in text:
                yield f"{name} does not lead to {stem}"


def main(python, doxygen, folder, docs):
    docs = Path(docs)
    is_built = build(python, doxygen, folder, docs)
    site = Site(Path(folder) / "html")
    mistakes = [*site.broken_links(), *mistakes_of_guide(site, docs), *mistakes_of_classes(site, docs)]
    print("\n".join(mistakes) or f"{len(site.texts)} pages")
    return 1 if mistakes or not is_built or not site.texts else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
