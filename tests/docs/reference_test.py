"""Builds the reference without one warning, and follows what the pages of the guide link to and show.

usage: reference_test.py <doxygen> <Doxyfile> <folder of the guide>
"""
import re
import subprocess
import sys
from pathlib import Path

LINK = re.compile(r'(?:href|src)="([^"#:]+)(?:#[^"]*)?"')


def main(doxygen, doxyfile, guide):
    result = subprocess.run([doxygen, doxyfile], check=False)
    html = Path(doxyfile).parent / "html"
    mistakes = []
    for source in sorted(Path(guide).glob("*.md")):
        page = html / f"md_docs_guide_{source.stem}.html"
        if not page.is_file():
            mistakes.append(f"{source.name} has no page {page.name}")
            continue
        text = page.read_text(encoding="utf-8")
        title = re.search(r"^# (.*)", source.read_text(encoding="utf-8"), re.M).group(1)
        if f"<title>orvex: {title}".replace("'", "&#39;") not in text:
            mistakes.append(f"{page.name} is not called {title}")
        mistakes += [f"{page.name}: nothing is at {link}" for link in LINK.findall(text)
                     if not (html / link).is_file()]
    print("\n".join(mistakes))
    return 1 if result.returncode or mistakes else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
