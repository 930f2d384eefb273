#!/usr/bin/env python3
"""Makes a font's glyph sheet and its BMFont description from an outline font.

    examples/data/make_font.py [folder [face.ttf [size]]]

Without arguments: DejaVu Sans of 24 pixels, beside this script. The output lies in the repository:
run this only to change it. Needs python3-pil, and fonts-dejavu-core for the default face.
"""

import os
import sys

from PIL import Image, ImageDraw, ImageFont

FACE = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"
CODES = range(32, 127)
SHEET_WIDTH = 256
GAP = 2  # between glyphs, so that filtering doesn't blend neighbours


class Glyph:
    """A character, with the box of its ink, where that goes on the sheet, and how it is set."""

    def __init__(self, font, code):
        self.code = code
        self.advance = round(font.getlength(chr(code)))
        margin = font.size
        scratch = Image.new("L", (4 * margin, 4 * margin), 0)
        ImageDraw.Draw(scratch).text((margin, margin), chr(code), fill=255, font=font)
        box = scratch.getbbox() or (margin, margin, margin, margin)
        self.ink = scratch.crop(box)
        self.left, self.top = box[0] - margin, box[1] - margin
        self.width, self.height = box[2] - box[0], box[3] - box[1]
        self.x = self.y = 0


def pack(glyphs):
    """Places the glyphs in rows, the highest first; returns the sheet's height, a power of two."""
    x = y = GAP
    row = 0
    for glyph in sorted(glyphs, key=lambda g: (-g.height, g.code)):
        if x + glyph.width + GAP > SHEET_WIDTH:
            x, y, row = GAP, y + row + GAP, 0
        glyph.x, glyph.y = x, y
        x += glyph.width + GAP
        row = max(row, glyph.height)
    height = 1
    while height < y + row + GAP:
        height *= 2
    return height


def draw(glyphs, height):
    """White on black: decoders drop an alpha channel, so that the brightness is the opacity.

    Upside down: the first row of a file is the lowest of a texture, and glyphs are looked for from
    the texture's top.
    """
    sheet = Image.new("L", (SHEET_WIDTH, height), 0)
    for glyph in glyphs:
        sheet.paste(glyph.ink, (glyph.x, glyph.y))
    return sheet.transpose(Image.Transpose.FLIP_TOP_BOTTOM)


def describe(font, glyphs, height, name, size, image):
    """The description. Offsets are at least 0: readers take them as unsigned numbers."""
    ascent, descent = font.getmetrics()
    yield '<?xml version="1.0"?>'
    yield "<font>"
    yield f'  <info face="{name}" size="{size}" padding="0,0,0,0" spacing="0,0"/>'
    yield (f'  <common lineHeight="{ascent + descent}" base="{ascent}" scaleW="{SHEET_WIDTH}"'
           f' scaleH="{height}" pages="1"/>')
    yield "  <pages>"
    yield f'    <page id="0" file="{image}"/>'
    yield "  </pages>"
    yield f'  <chars count="{len(glyphs)}">'
    for g in glyphs:
        yield (f'    <char id="{g.code}" x="{g.x}" y="{g.y}" width="{g.width}" height="{g.height}"'
               f' xoffset="{max(0, g.left)}" yoffset="{max(0, g.top)}" xadvance="{g.advance}"'
               ' page="0" chnl="15"/>')
    yield "  </chars>"
    yield "</font>"


def main(arguments):
    folder = arguments[0] if arguments else os.path.dirname(os.path.abspath(__file__))
    face = arguments[1] if len(arguments) > 1 else FACE
    size = int(arguments[2]) if len(arguments) > 2 else 24

    font = ImageFont.truetype(face, size, layout_engine=ImageFont.Layout.BASIC)
    glyphs = [Glyph(font, code) for code in CODES]
    height = pack(glyphs)
    name = font.getname()[0]
    stem = f"{name.lower().replace(' ', '_')}_{size}"

    draw(glyphs, height).save(os.path.join(folder, stem + ".png"), optimize=True)
    with open(os.path.join(folder, stem + ".xml"), "w", encoding="ascii", newline="\n") as file:
        for line in describe(font, glyphs, height, name, size, stem + ".png"):
            print(line, file=file)


if __name__ == "__main__":
    main(sys.argv[1:])
