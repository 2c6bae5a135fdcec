#!/usr/bin/env python3
"""Writes a drawing of a given size for whole-process benchmarks.

Usage: make_large_drawing.py FILE [MEGABYTES]
R2010, ASCII: a street of 1000 vertices (handle 2F, layer STREET), 10000 labels along it on layer LABELS, half of them
centred on an alignment point, and behind them contour lines, points and texts on layers of their own until the file
has its size (100 MB unless told). The same bytes every time.
"""

import math
import random
import sys

VERTICES, LABELS = 1000, 10000
X, Y = 25496000.0, 6672000.0


def street():
    x, y, direction = X, Y, 0.0
    chance = random.Random(20091117)
    for _ in range(VERTICES):
        yield x, y
        direction += chance.uniform(-0.3, 0.3) - 0.02 * direction
        x, y = x + 20 * math.cos(direction), y + 20 * math.sin(direction)


class Writer:
    def __init__(self, file):
        self.file, self.size, self.handle = file, 0, 0x100

    def groups(self, *pairs):
        text = "".join(f"{code:3d}\n{value}\n" for code, value in pairs)
        self.size += len(text)
        self.file.write(text)

    def entity(self, kind, subclasses, handle=None):
        """`subclasses`: (layer, marker, groups), the marker None for the class of all entities alone."""
        layer, marker, groups = subclasses
        self.handle += 1
        self.groups((0, kind), (5, f"{handle or self.handle:X}"), (330, "1F"), (100, "AcDbEntity"), (8, layer),
                    (100, marker), *groups)


def real(value):
    return f"{value:.3f}"


def label(writer, number, x, y, centred):
    groups = [(10, real(x)), (20, real(y)), (30, "0.0"), (40, "2.5"), (1, f"label {number}")]
    if centred:
        groups += [(72, 1), (11, real(x + 3)), (21, real(y + 1)), (31, "0.0"), (100, "AcDbText"), (73, 2)]
    else:
        groups += [(100, "AcDbText")]
    writer.entity("TEXT", ("LABELS", "AcDbText", groups))


def contour(writer, chance):
    x, y = X + chance.uniform(-2000, 20000), Y + chance.uniform(-5000, 5000)
    count = chance.randrange(20, 200)
    groups = [(90, count), (70, 0), (38, real(chance.uniform(0, 90)))]
    for _ in range(count):
        x, y = x + chance.uniform(-5, 5), y + chance.uniform(-5, 5)
        groups += [(10, real(x)), (20, real(y))]
    writer.entity("LWPOLYLINE", ("CONTOURS", "AcDbPolyline", groups))


def filler(writer, chance):
    contour(writer, chance)
    for _ in range(4):
        x, y = X + chance.uniform(-2000, 20000), Y + chance.uniform(-5000, 5000)
        writer.entity("POINT", ("POINTS", "AcDbPoint", [(10, real(x)), (20, real(y)), (30, real(chance.uniform(0, 90)))]))
        writer.entity("LINE", ("LINES", "AcDbLine", [(10, real(x)), (20, real(y)), (30, "0.0"), (11, real(x + 3)),
                                                     (21, real(y + 4)), (31, "0.0")]))


def table(writer, name, handle, records):
    writer.groups((0, "TABLE"), (2, name), (5, handle), (330, "0"), (100, "AcDbSymbolTable"), (70, len(records)))
    for record in records:
        writer.groups(*record)
    writer.groups((0, "ENDTAB"))


def head(writer):
    writer.groups((0, "SECTION"), (2, "HEADER"), (9, "$ACADVER"), (1, "AC1024"), (9, "$HANDSEED"), (5, "FFFFFFF"),
                  (0, "ENDSEC"), (0, "SECTION"), (2, "TABLES"))
    layers = ["0", "STREET", "LABELS", "CONTOURS", "POINTS", "LINES"]
    table(writer, "LAYER", "2", [
        [(0, "LAYER"), (5, f"{0x10 + i:X}"), (330, "2"), (100, "AcDbSymbolTableRecord"),
         (100, "AcDbLayerTableRecord"), (2, layer), (70, 0), (62, 7), (6, "CONTINUOUS")]
        for i, layer in enumerate(layers)])
    table(writer, "BLOCK_RECORD", "1", [
        [(0, "BLOCK_RECORD"), (5, handle), (330, "1"), (100, "AcDbSymbolTableRecord"),
         (100, "AcDbBlockTableRecord"), (2, name)]
        for handle, name in (("1F", "*Model_Space"), ("1B", "*Paper_Space"))])
    writer.groups((0, "ENDSEC"), (0, "SECTION"), (2, "BLOCKS"))
    for owner, handle, name in (("1F", 0x20, "*Model_Space"), ("1B", 0x22, "*Paper_Space")):
        writer.groups((0, "BLOCK"), (5, f"{handle:X}"), (330, owner), (100, "AcDbEntity"), (8, "0"),
                      (100, "AcDbBlockBegin"), (2, name), (70, 0), (10, "0.0"), (20, "0.0"), (30, "0.0"), (3, name),
                      (1, ""), (0, "ENDBLK"), (5, f"{handle + 1:X}"), (330, owner), (100, "AcDbEntity"), (8, "0"),
                      (100, "AcDbBlockEnd"))
    writer.groups((0, "ENDSEC"), (0, "SECTION"), (2, "ENTITIES"))


def main():
    size = int(float(sys.argv[2] if len(sys.argv) > 2 else 100) * 1e6)
    chance = random.Random(4)
    with open(sys.argv[1], "w", encoding="ascii", newline="\r\n") as file:
        writer = Writer(file)
        head(writer)
        vertices = list(street())
        groups = [(90, VERTICES), (70, 0)]
        for x, y in vertices:
            groups += [(10, real(x)), (20, real(y))]
        writer.entity("LWPOLYLINE", ("STREET", "AcDbPolyline", groups), handle=0x2F)
        for number in range(LABELS):
            x, y = vertices[number * VERTICES // LABELS]
            label(writer, number, x + chance.uniform(-30, 30), y + chance.uniform(-30, 30), number % 2 == 0)
        # A carriage return for each line is on the disk too.
        while writer.size * 1.105 < size:
            filler(writer, chance)
        writer.groups((0, "ENDSEC"), (0, "EOF"))


if __name__ == "__main__":
    main()
