"""Draws the built-in font: plain.png, a sheet of white glyphs on black, and plain.xml, its charset.

usage: make_font.py <folder>

A glyph is a width and strokes, on a grid where capitals are 7 units high, small letters 5, and what
hangs below the base line 2. A stroke is a row of points "x,y" and arcs "@x,y,rx,ry,from,to" around
a middle, by angles in degrees counted from +X to +Y; "|" begins the next stroke.
"""
import math
import struct
import sys
import zlib

UNIT = 4            # pixels
ASCENT = 8          # units from the top of a line to the base line
LINE = 11           # units from line to line
SIDE = 1            # units left free on each side of a glyph
RADIUS = 0.46       # units, half the width of a stroke
SHEET_WIDTH = 512   # pixels
GAP = 2             # pixels between glyphs

GLYPHS = {
    " ": (2, ""),
    "!": (0, "0,7 0,2.2 | 0,0 0,0.05"),
    '"': (1.6, "0,7 0,5 | 1.6,7 1.6,5"),
    "#": (4.4, "1,0.4 1.8,6.6 | 2.8,0.4 3.6,6.6 | 0,2.4 4.2,2.4 | 0.3,4.6 4.4,4.6"),
    "$": (4, "3.9,5.6 @2,4.9,1.9,1.4,40,270 @2,2.1,2,1.4,90,-150 | 2,8 2,-1"),
    "%": (5.2, "0.6,0 4.6,7 | @1.1,5.6,1.1,1.3,0,360 | @4.1,1.4,1.1,1.3,0,360"),
    "&": (4.8, "4.8,0 1.0,4.7 @1.9,5.5,1.2,1.5,215,-35 0.9,3.1 @1.9,1.7,1.9,1.7,125,300 @1.9,1.9,"
          "2.6,1.9,-60,10"),
    "'": (0, "0,7 0,5"),
    "(": (1.6, "@2.6,3,2.6,5,118,242"),
    ")": (1.6, "@-1,3,2.6,5,62,-62"),
    "*": (3.4, "1.7,6.8 1.7,3.2 | 0.1,5.9 3.3,4.1 | 0.1,4.1 3.3,5.9"),
    "+": (4, "2,1 2,5 | 0,3 4,3"),
    ",": (0.6, "0.6,0.2 0,-1.4"),
    "-": (2.6, "0,3 2.6,3"),
    ".": (0, "0,0 0,0.05"),
    "/": (3.2, "0,-0.8 3.2,7.6"),
    "0": (4, "@2,5,2,2,0,180 @2,2,2,2,180,360 4,5"),
    "1": (2.4, "0,5.4 1.8,7 1.8,0"),
    "2": (4, "@2,5.1,2,1.9,165,-40 0,0 4,0"),
    "3": (4, "@1.9,5.3,1.8,1.7,150,-90 1.4,3.6 | 1.9,3.6 @1.9,1.8,2.1,1.8,90,-155"),
    "4": (4.4, "3.3,0 3.3,7 0,2 4.4,2"),
    "5": (4, "3.7,7 0.6,7 0.3,3.7 @1.9,2.2,2.1,2.2,125,-150"),
    "6": (4, "@2,2.1,2,2.1,0,360 | 0,2.1 @3.4,2.1,3.4,4.9,180,92"),
    "7": (4, "0,7 4,7 1.2,0"),
    "8": (4, "@2,5.4,1.7,1.6,0,360 | @2,1.9,2,1.9,0,360"),
    "9": (4, "@2,4.9,2,2.1,0,360 | 4,4.9 @0.6,4.9,3.4,4.9,0,-88"),
    ":": (0, "0,4.4 0,4.45 | 0,0 0,0.05"),
    ";": (0.6, "0.6,4.4 0.6,4.45 | 0.6,0.2 0,-1.4"),
    "<": (3.8, "3.8,5.2 0,3 3.8,0.8"),
    "=": (4, "0,4 4,4 | 0,2 4,2"),
    ">": (3.8, "0,5.2 3.8,3 0,0.8"),
    "?": (3.4, "@1.7,5.3,1.7,1.7,165,-45 @2.6,2.9,0.9,1.1,120,180 1.7,2.2 | 1.7,0 1.7,0.05"),
    "@": (6, "@3,2.7,1.4,1.6,0,360 | 4.4,4.3 4.4,1.9 @5.2,1.9,0.8,0.9,180,360 6,2.7 @3,2.7,3,3.9,"
          "0,305"),
    "A": (5, "0,0 2.5,7 5,0 | 0.9,2.4 4.1,2.4"),
    "B": (4.2, "0,0 0,7 2.1,7 @2.1,5.3,1.7,1.7,90,-90 0,3.6 | 2.1,3.6 @2.3,1.8,1.9,1.8,90,-90 0,0"),
    "C": (4.6, "@2.9,3.5,2.9,3.5,55,305"),
    "D": (4.6, "0,0 0,7 1.4,7 @1.4,3.5,3.2,3.5,90,-90 0,0"),
    "E": (3.8, "3.8,7 0,7 0,0 3.8,0 | 0,3.6 3.2,3.6"),
    "F": (3.6, "3.6,7 0,7 0,0 | 0,3.6 3,3.6"),
    "G": (4.8, "@2.9,3.5,2.9,3.5,55,305 4.8,0.9 4.8,3.2 3.1,3.2"),
    "H": (4.4, "0,0 0,7 | 4.4,0 4.4,7 | 0,3.6 4.4,3.6"),
    "I": (0, "0,0 0,7"),
    "J": (2.8, "2.8,7 2.8,1.9 @1.2,1.9,1.6,1.9,0,-140"),
    "K": (4.4, "0,0 0,7 | 4.2,7 0,2.7 | 1.5,4.2 4.4,0"),
    "L": (3.6, "0,7 0,0 3.6,0"),
    "M": (5.6, "0,0 0,7 2.8,2.2 5.6,7 5.6,0"),
    "N": (4.6, "0,0 0,7 4.6,0 4.6,7"),
    "O": (5.4, "@2.7,3.5,2.7,3.5,0,360"),
    "P": (4, "0,0 0,7 2.1,7 @2.1,5.1,1.9,1.9,90,-90 0,3.2"),
    "Q": (5.4, "@2.7,3.5,2.7,3.5,0,360 | 3.2,1.8 5.3,-0.7"),
    "R": (4.3, "0,0 0,7 2.1,7 @2.1,5.1,1.9,1.9,90,-90 0,3.2 | 2.1,3.2 4.3,0"),
    "S": (4, "@2,5.2,1.9,1.8,30,270 @2,1.7,2,1.7,90,-150"),
    "T": (4.6, "0,7 4.6,7 | 2.3,7 2.3,0"),
    "U": (4.4, "0,7 0,2.2 @2.2,2.2,2.2,2.2,180,360 4.4,7"),
    "V": (5, "0,7 2.5,0 5,7"),
    "W": (7, "0,7 1.8,0 3.5,6.2 5.2,0 7,7"),
    "X": (4.6, "0,0 4.6,7 | 0,7 4.6,0"),
    "Y": (4.6, "0,7 2.3,3.4 4.6,7 | 2.3,3.4 2.3,0"),
    "Z": (4.4, "0,7 4.4,7 0,0 4.4,0"),
    "[": (1.5, "1.5,7.6 0,7.6 0,-1.4 1.5,-1.4"),
    "\\": (3.2, "0,7.6 3.2,-0.8"),
    "]": (1.5, "0,7.6 1.5,7.6 1.5,-1.4 0,-1.4"),
    "^": (3.4, "0,4.8 1.7,7 3.4,4.8"),
    "_": (4.4, "0,-1.2 4.4,-1.2"),
    "`": (1.2, "0,7.2 1.2,5.9"),
    "a": (3.8, "@1.9,2.5,1.9,2.5,0,360 | 3.8,5 3.8,0"),
    "b": (3.8, "@1.9,2.5,1.9,2.5,0,360 | 0,7 0,0"),
    "c": (3.3, "@2,2.5,2,2.5,50,310"),
    "d": (3.8, "@1.9,2.5,1.9,2.5,0,360 | 3.8,7 3.8,0"),
    "e": (3.8, "0,2.6 3.8,2.6 @1.9,2.5,1.9,2.5,0,315"),
    "f": (2.4, "0.9,0 0.9,5.4 @2.4,5.4,1.5,1.6,180,90 | 0,4.6 2.3,4.6"),
    "g": (3.8, "@1.9,2.5,1.9,2.5,0,360 | 3.8,5 3.8,0 @1.9,0,1.9,2,0,-145"),
    "h": (3.5, "0,0 0,7 | 0,3.2 @1.75,3.2,1.75,1.8,180,0 3.5,0"),
    "i": (0, "0,0 0,4.8 | 0,6.8 0,6.85"),
    "j": (1, "1,4.8 1,-0.7 @-0.3,-0.7,1.3,1.3,0,-80 | 1,6.8 1,6.85"),
    "k": (3.4, "0,0 0,7 | 3.2,4.9 0,1.9 | 1.2,3 3.4,0"),
    "l": (0, "0,0 0,7"),
    "m": (5.8, "0,0 0,5 | 0,3.5 @1.45,3.5,1.45,1.5,180,0 2.9,0 | 2.9,3.5 @4.35,3.5,1.45,1.5,180,0 "
          "5.8,0"),
    "n": (3.5, "0,0 0,5 | 0,3.2 @1.75,3.2,1.75,1.8,180,0 3.5,0"),
    "o": (3.8, "@1.9,2.5,1.9,2.5,0,360"),
    "p": (3.8, "@1.9,2.5,1.9,2.5,0,360 | 0,5 0,-2"),
    "q": (3.8, "@1.9,2.5,1.9,2.5,0,360 | 3.8,5 3.8,-2"),
    "r": (2.2, "0,0 0,5 | 0,2.9 @2.1,2.9,2.1,2,180,88"),
    "s": (3.1, "@1.5,3.75,1.45,1.25,25,270 @1.55,1.25,1.55,1.25,90,-155"),
    "t": (2.4, "0.9,6.6 0.9,1.5 @2.3,1.5,1.4,1.5,180,275 | 0,4.8 2.3,4.8"),
    "u": (3.5, "0,5 0,1.8 @1.75,1.8,1.75,1.8,180,360 3.5,5 | 3.5,1.8 3.5,0"),
    "v": (3.6, "0,5 1.8,0 3.6,5"),
    "w": (5.4, "0,5 1.4,0 2.7,4.4 4,0 5.4,5"),
    "x": (3.5, "0,0 3.5,5 | 0,5 3.5,0"),
    "y": (3.6, "0,5 1.9,0.1 | 3.6,5 1.6,-1.2 @0.4,-0.8,1.25,1.2,-20,-100"),
    "z": (3.3, "0,5 3.3,5 0,0 3.3,0"),
    "{": (2, "2,7.6 @2,6.6,1.1,1,90,180 0.9,4.2 @-0.1,4.2,1,1.1,0,-90 | @-0.1,2,1,1.1,90,0 "
          "0.9,-0.4 @2,-0.4,1.1,1,180,270"),
    "|": (0, "0,7.6 0,-1.4"),
    "}": (2, "0,7.6 @0,6.6,1.1,1,90,0 1.1,4.2 @2.1,4.2,1,1.1,180,270 | @2.1,2,1,1.1,90,180 "
          "1.1,-0.4 @0,-0.4,1.1,1,0,-90"),
    "~": (4.2, "@1.1,2.7,1.1,0.9,170,20 @3.1,3.3,1.1,0.9,200,350"),
}


def points_of(stroke):
    points = []
    for word in stroke.split():
        numbers = [float(number) for number in word.lstrip("@").split(",")]
        if word[0] != "@":
            points.append(tuple(numbers))
            continue
        x, y, rx, ry, start, end = numbers
        steps = max(2, int(abs(end - start) / 6))
        for step in range(steps + 1):
            angle = math.radians(start + (end - start) * step / steps)
            points.append((x + rx * math.cos(angle), y + ry * math.sin(angle)))
    return points


def segments_of(strokes):
    for stroke in strokes.split("|"):
        points = points_of(stroke)
        yield from ((a, b) for a, b in zip(points, points[1:]) if a != b)


def distance(x, y, segment):
    (ax, ay), (bx, by) = segment
    dx, dy = bx - ax, by - ay
    along = ((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy)
    along = min(max(along, 0.0), 1.0)
    return math.hypot(x - ax - along * dx, y - ay - along * dy)


class Sheet:
    """Glyphs row by row, each in a cell as high as a line."""

    def __init__(self):
        self.rows = []
        self.x = self.y = 0

    def cell(self, width):
        height = LINE * UNIT
        if self.x + width > SHEET_WIDTH:
            self.x, self.y = 0, self.y + height + GAP
        while len(self.rows) < self.y + height + GAP:
            self.rows.append(bytearray(SHEET_WIDTH))
        corner = self.x, self.y
        self.x += width + GAP
        return corner

    def draw(self, width, strokes):
        segments = list(segments_of(strokes))
        pixels = math.ceil((width + 2 * SIDE) * UNIT)
        left, top = self.cell(pixels)
        for row in range(LINE * UNIT):
            for column in range(pixels):
                x = (column + 0.5) / UNIT - SIDE
                y = ASCENT - (row + 0.5) / UNIT
                away = min((distance(x, y, s) for s in segments), default=9) - RADIUS
                shade = min(max(0.5 - away * UNIT, 0.0), 1.0)
                self.rows[top + row][left + column] = round(255 * shade)
        return left, top, pixels

    def png(self):
        def chunk(kind, data):
            return (struct.pack(">I", len(data)) + kind + data +
                    struct.pack(">I", zlib.crc32(kind + data)))
        head = struct.pack(">IIBBBBB", SHEET_WIDTH, len(self.rows), 8, 0, 0, 0, 0)
        pixels = b"".join(b"\0" + bytes(row) for row in self.rows)
        return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) +
                chunk(b"IDAT", zlib.compress(pixels, 9)) + chunk(b"IEND", b""))


def main(folder):
    sheet = Sheet()
    lines = []
    for character in sorted(GLYPHS):
        width, strokes = GLYPHS[character]
        x, y, pixels = sheet.draw(width, strokes)
        advance = round((width + 1.7 * SIDE) * UNIT)
        lines.append(f'    <char id="{ord(character)}" x="{x}" y="{y}" width="{pixels}" '
                     f'height="{LINE * UNIT}" xoffset="0" yoffset="0" xadvance="{advance}" '
                     f'page="0" chnl="15"/>')
    with open(f"{folder}/plain.png", "wb") as file:
        file.write(sheet.png())
    with open(f"{folder}/plain.xml", "w", encoding="ascii") as file:
        file.write('<?xml version="1.0"?>\n<font>\n'
                   f'  <info face="plain" size="{7 * UNIT}" padding="0,0,0,0" spacing="0,0"/>\n'
                   f'  <common lineHeight="{LINE * UNIT}" base="{ASCENT * UNIT}" '
                   f'scaleW="{SHEET_WIDTH}" scaleH="{len(sheet.rows)}" pages="1"/>\n'
                   '  <pages>\n    <page id="0" file="plain.png"/>\n  </pages>\n'
                   f'  <chars count="{len(lines)}">\n' + "\n".join(lines) +
                   '\n  </chars>\n</font>\n')


if __name__ == "__main__":
    main(sys.argv[1])
