#!/usr/bin/env python3
"""Writes the small drawings of this folder: every release, ASCII and binary, odd ones and broken ones.

    tests/data/make_drawings.py            writes all of them anew (the results are under version control)
    tests/data/make_drawings.py --check    says whether they are what this program writes

releases/  one drawing in the clothes of each release, in different spellings of lines and numbers
odd/       drawings with something wrong in them that are read and kept as they are
broken/    files that must be refused
contours/  contour lines, for what is tried on real drawings otherwise
"""
import math
import os
import struct
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
EAST, NORTH = 25496000.0, 6672000.0  # metres of a map grid

RELEASES = {  # name: $ACADVER, code page
    "r9": ("AC1004", "cp437"), "r10": ("AC1006", "cp437"), "r12": ("AC1009", "cp850"),
    "r13": ("AC1012", "cp850"), "r14": ("AC1014", "cp1252"), "r2000": ("AC1015", "cp1252"),
    "r2004": ("AC1018", "cp1252"), "r2007": ("AC1021", "utf-8"), "r2010": ("AC1024", "utf-8"),
    "r2013": ("AC1027", "utf-8"), "r2018": ("AC1032", "utf-8"),
}


def value_type(code):
    """How the value of a group code is stored, as the format defines it."""
    ranges = [(0, 9, "s"), (10, 59, "d"), (60, 79, "h"), (90, 99, "i"), (100, 102, "s"), (105, 105, "s"),
              (110, 149, "d"), (160, 169, "q"), (170, 179, "h"), (210, 239, "d"), (270, 289, "h"),
              (290, 299, "?"), (300, 309, "s"), (310, 319, "b"), (320, 369, "s"), (370, 389, "h"),
              (390, 399, "s"), (400, 409, "h"), (410, 419, "s"), (420, 429, "i"), (430, 439, "s"),
              (440, 459, "i"), (460, 469, "d"), (470, 481, "s"), (999, 1003, "s"), (1004, 1004, "b"),
              (1005, 1009, "s"), (1010, 1059, "d"), (1060, 1070, "h"), (1071, 1071, "i")]
    return next(kind for first, last, kind in ranges if first <= code <= last)


class Spelling:
    """How an ASCII drawing writes its lines and numbers."""

    def __init__(self, eol=b"\r\n", width=3, real="pointzero", integers=0):
        self.eol, self.width, self.real_style, self.integers = eol, width, real, integers

    def real(self, value):
        if self.real_style == "pointzero":
            return repr(float(value)) if "e" not in repr(float(value)) else "%.16f" % value
        if self.real_style == "bare":
            return repr(float(value))[:-2] if float(value).is_integer() else repr(float(value))
        return "%.*f" % (int(self.real_style), value)

    def group(self, code, value, encoding):
        kind = value_type(code)
        if kind == "d":
            text = self.real(value).encode()
        elif kind in "hiq?":
            text = (str(value).rjust(self.integers if kind in "hi" else 0)).encode()
        elif kind == "b":
            text = value.hex().upper().encode()
        else:
            text = encode(value, encoding)
        return str(code).rjust(self.width).encode() + self.eol + text + self.eol


def encode(text, encoding):
    """Text in a code page; what it lacks as \\U+nnnn."""
    out = b""
    for c in text:
        try:
            out += c.encode(encoding)
        except UnicodeEncodeError:
            out += b"\\U+%04X" % ord(c)
    return out


def ascii_drawing(groups, encoding, spelling):
    return b"".join(spelling.group(code, value, encoding) for code, value in groups)


def binary_drawing(groups, encoding, wide):
    """Codes of two bytes from R13 on; before, of one, with 255 before those of extended data."""
    out = [b"AutoCAD Binary DXF\r\n\x1a\0"]
    for code, value in groups:
        if code == 999:
            continue  # there are no comments in binary drawings
        out.append(struct.pack("<h", code) if wide else
                   bytes([code]) if code < 255 else b"\xff" + struct.pack("<h", code))
        kind = value_type(code)
        if kind == "s":
            out.append(encode(value, encoding) + b"\0")
        elif kind == "b":
            out.append(bytes([len(value)]) + value)
        else:
            out.append(struct.pack("<" + kind, value))
    return b"".join(out)


class Drawing:
    """A few streets with names, house numbers and symbols, as a list of (code, value)."""

    def __init__(self, release):
        self.release = release
        self.version, self.encoding = RELEASES[release]
        self.modern = self.version >= "AC1012"  # subclass markers, owners, obligatory handles
        self.handles = self.version >= "AC1006"
        self.next = 0x20
        self.groups = []
        self.model, self.paper = "1F", "1E"
        self.header()
        if self.modern:
            self.classes()
        self.tables()
        self.blocks()
        self.entities()
        if self.modern:
            self.objects()
        if self.version >= "AC1015":
            self.section("THUMBNAILIMAGE", [(90, 6), (310, bytes([40, 0, 255, 13, 10, 26]))])
        self.groups.append((0, "EOF"))

    def section(self, name, groups):
        self.groups += [(0, "SECTION"), (2, name)] + groups + [(0, "ENDSEC")]

    def handle(self):
        self.next += 1
        return "%X" % self.next

    def header(self):
        pages = {"cp437": "dos437", "cp850": "dos850", "cp1252": "ANSI_1252", "utf-8": "ANSI_1252"}
        groups = [(9, "$ACADVER"), (1, self.version)]
        if self.version >= "AC1009":
            groups += [(9, "$DWGCODEPAGE"), (3, pages[self.encoding])]
        groups += [(9, "$INSBASE"), (10, 0.0), (20, 0.0), (30, 0.0),
                   (9, "$EXTMIN"), (10, EAST), (20, NORTH), (30, 0.0),
                   (9, "$EXTMAX"), (10, EAST + 500), (20, NORTH + 300), (30, 12.5),
                   (9, "$LTSCALE"), (40, 1.0)]
        if self.handles and not self.modern:
            groups += [(9, "$HANDLING"), (70, 1)]
        if self.handles:
            groups += [(9, "$HANDSEED"), (5, "FFF")]
        if self.version >= "AC1015":
            groups += [(9, "$INSUNITS"), (70, 6)]
        groups += [(9, "$CLAYER"), (8, "KATU")]
        self.section("HEADER", groups)

    def classes(self):
        tail = [(91, 1)] if self.version >= "AC1018" else []
        self.section("CLASSES", [(0, "CLASS"), (1, "ZZ_PIPE"), (2, "ZzDbPipe"), (3, "ZzPipes"), (90, 4095)] +
                     tail + [(280, 0), (281, 1)])

    def table(self, name, rows):
        groups = [(0, "TABLE"), (2, name)]
        table = self.handle()
        if self.modern:
            groups += [(5, table), (330, "0")] if self.version >= "AC1015" else [(5, table)]
            groups += [(100, "AcDbSymbolTable")]
        groups += [(70, len(rows))]
        classes = {"LTYPE": "Linetype", "LAYER": "Layer", "STYLE": "TextStyle", "APPID": "RegApp",
                   "DIMSTYLE": "DimStyle", "BLOCK_RECORD": "Block", "VPORT": "Viewport"}
        for row in rows:
            given = dict(row).get("handle")
            row = [pair for pair in row if pair[0] != "handle"]
            groups.append((0, name))
            if self.modern:
                groups.append((105 if name == "DIMSTYLE" else 5, given or self.handle()))
                if self.version >= "AC1015":
                    groups.append((330, table))
                groups += [(100, "AcDbSymbolTableRecord"), (100, "AcDb%sTableRecord" % classes[name])]
            groups += row
        return groups + [(0, "ENDTAB")]

    def tables(self):
        line = [(3, "Solid line"), (72, 65), (73, 0), (40, 0.0)]
        groups = self.table("VPORT", [[(2, "*ACTIVE"), (70, 0), (10, 0.0), (20, 0.0), (11, 1.0), (21, 1.0),
                                       (12, EAST + 250), (22, NORTH + 150), (40, 300.0), (41, 1.5)]])
        names = ["BYBLOCK", "BYLAYER", "CONTINUOUS"] if self.modern else ["CONTINUOUS"]
        groups += self.table("LTYPE", [[(2, name), (70, 0)] + line for name in names])
        layers = [("0", 0, 7), ("KATU", 0, 3), ("OSOITE", 0, 2), ("JÄÄTYNYT", 1, 5), ("LUKITTU", 4, 1),
                  ("POIS", 0, -6)]
        groups += self.table("LAYER", [[(2, n), (70, flags), (62, colour), (6, "CONTINUOUS")]
                                       for n, flags, colour in layers])
        groups += self.table("STYLE", [[(2, "STANDARD"), (70, 0), (40, 0.0), (41, 1.0), (50, 0.0), (71, 0),
                                        (42, 2.5), (3, "txt"), (4, "")]])
        if self.version >= "AC1009":
            groups += self.table("APPID", [[(2, "ACAD"), (70, 0)], [(2, "ZZ_KARTTA"), (70, 0)]])
            sizes = [(40, 1.0), (41, 2.5), (42, 0.625), (140, 2.5)]
            arrows = [] if self.modern else [(3, ""), (4, ""), (5, "NUOLI"), (6, ""), (7, "")]
            groups += self.table("DIMSTYLE", [[(2, "STANDARD"), (70, 0)] + arrows + sizes])
        if self.modern:
            groups += self.table("BLOCK_RECORD", [
                [("handle", self.model), (2, "*MODEL_SPACE")], [("handle", self.paper), (2, "*PAPER_SPACE")],
                [("handle", "1D"), (2, "PUU")]])
        self.section("TABLES", groups)

    def entity(self, kind, layer, classes, groups, owner=None, extended=True):
        out = [(0, kind)]
        handle = self.handle()
        if self.handles:
            out.append((5, handle))
        if self.modern:
            if self.version >= "AC1015":
                out.append((330, owner or self.model))
            out.append((100, "AcDbEntity"))
        out.append((8, layer))
        marks = list(classes)
        for group in groups:
            if group == "mark":
                if self.modern:
                    out.append((100, marks.pop(0)))
            else:
                out.append(group)
        if extended and self.version >= "AC1009":
            out += [(1001, "ZZ_KARTTA"), (1000, "mitattu"), (1002, "{"), (1003, "KATU"), (1004, bytes([1, 0, 254])),
                    (1010, EAST), (1020, NORTH), (1030, 0.0), (1040, 0.125), (1070, -7), (1071, 70000),
                    (1002, "}")]
        return out, handle

    def blocks(self):
        groups = []
        spaces = [("*MODEL_SPACE", self.model), ("*PAPER_SPACE", self.paper)] if self.modern else []
        for name, owner in spaces + [("PUU", "1D")]:
            begin = [(0, "BLOCK")]
            end = [(0, "ENDBLK")]
            if self.handles:
                begin.append((5, self.handle()))
                end.append((5, self.handle()))
            if self.modern:
                owned = [(330, owner)] if self.version >= "AC1015" else []
                begin += owned + [(100, "AcDbEntity"), (8, "0"), (100, "AcDbBlockBegin")]
                end += owned + [(100, "AcDbEntity"), (8, "0"), (100, "AcDbBlockEnd")]
            else:
                begin.append((8, "0"))
                end.append((8, "0"))
            groups += begin + [(2, name), (70, 2 if name == "PUU" else 0), (10, 0.0), (20, 0.0), (30, 0.0),
                               (3, name), (1, "")]
            if name == "PUU":
                groups += self.entity("CIRCLE", "0", ["AcDbCircle"], ["mark", (10, 0.0), (20, 0.0), (30, 0.0),
                                                                      (40, 1.5)], "1D", False)[0]
                groups += self.entity("ATTDEF", "0", ["AcDbText", "AcDbAttributeDefinition"], [
                    "mark", (10, 2.0), (20, 0.5), (30, 0.0), (40, 0.5), (1, "T0"), "mark", (3, "Tunnus"),
                    (2, "TUNNUS"), (70, 0)], "1D", False)[0]
            groups += end
        self.section("BLOCKS", groups)

    def point(self, code, x, y, z=0.0):
        return [(code, x), (code + 10, y), (code + 20, z)]

    def text(self, x, y, text, tail=(), layer="OSOITE"):
        return self.entity("TEXT", layer, ["AcDbText", "AcDbText"], ["mark"] + self.point(10, x, y) +
                           [(40, 2.5), (1, text)] + list(tail) + ["mark"])[0]

    def entities(self):
        e, n = EAST + 100.125, NORTH + 50.0625
        groups = []
        add = lambda *args: groups.extend(self.entity(*args)[0])
        add("LINE", "KATU", ["AcDbLine"], ["mark"] + self.point(10, e, n) + self.point(11, e + 200, n + 30.1))
        add("POINT", "KATU", ["AcDbPoint"], ["mark"] + self.point(10, e, n, 12.345678901234567))
        add("CIRCLE", "KATU", ["AcDbCircle"], ["mark"] + self.point(10, e, n) + [(40, 1.0 / 3.0)])
        add("ARC", "KATU", ["AcDbCircle", "AcDbArc"], ["mark"] + self.point(10, e, n) + [(40, 25.0), "mark",
                                                                                         (50, 0.0), (51, 97.5)])
        add("SOLID", "KATU", ["AcDbTrace"], ["mark"] + self.point(10, e, n) + self.point(11, e + 1, n) +
            self.point(12, e, n + 1) + self.point(13, e + 1, n + 1))
        if self.version >= "AC1006":
            add("3DFACE", "KATU", ["AcDbFace"], ["mark"] + self.point(10, e, n, 1.0) + self.point(11, e + 1, n, 1.5) +
                self.point(12, e, n + 1, 2.0) + self.point(13, e + 1, n + 1, 2.0) + [(70, 3)])
        groups += self.text(e + 10, n + 5, "Hämeentie")  # no group 50: not turned
        groups += self.text(e + 50, n + 5, "Åbo ½ \u0416", [(50, 97.5)])
        groups += self.text(e + 90, n + 5, "42 b", [(50, 270.0), (41, 0.8), (51, 15.0), (7, "STANDARD"), (71, 2)])
        groups += self.centred(e + 130, n + 5)
        groups += self.text(e + 150, n + 5, "peili", [(210, 0.0), (220, 0.0), (230, -1.0)]) if self.handles else []
        groups += self.text(e + 170, n + 5, "lukittu", [(50, 180.0)], "LUKITTU")
        add("INSERT", "KATU", ["AcDbBlockReference"], ["mark", (2, "PUU")] + self.point(10, e + 20, n + 8))
        add("INSERT", "KATU", ["AcDbBlockReference"], ["mark", (2, "PUU")] + self.point(10, e + 40, n + 8) + [
            (41, -0.5), (42, 0.5), (43, 0.5), (50, 12.25)])
        groups += self.attributed(e + 60, n + 8)
        add("INSERT", "KATU", ["AcDbBlockReference"], ["mark", (2, "PUU")] + self.point(10, e + 80, n + 8) + [
            (70, 2), (71, 3), (44, 4.0), (45, 5.0)])
        groups += self.polyline(e, n)
        if self.version >= "AC1014":
            add("LWPOLYLINE", "KATU", ["AcDbPolyline"], ["mark", (90, 3), (70, 0), (10, e), (20, n), (42, 0.5), (10, e + 9),
                                                         (20, n), (10, e + 9), (20, n + 9)])
        if self.modern:
            self.curves(add, e, n)
        self.section("ENTITIES", groups)

    def centred(self, x, y):
        tail = ["mark", (73, 2)] if self.modern else [(73, 2)]
        middle = [(50, 200.0), (72, 1)] + self.point(11, x, y)
        groups = ["mark"] + self.point(10, x + 3.25, y - 1.25) + [(40, 2.5), (1, "Keskuskatu")] + middle
        if self.version < "AC1009":
            tail = []  # vertical justification came with R11
        return self.entity("TEXT", "OSOITE", ["AcDbText", "AcDbText"], groups + tail)[0]

    def attributed(self, x, y):
        groups, owner = self.entity("INSERT", "KATU", ["AcDbBlockReference"],
                                    ["mark", (66, 1), (2, "PUU")] + self.point(10, x, y))
        groups += self.entity("ATTRIB", "KATU", ["AcDbText", "AcDbAttribute"], [
            "mark", *self.point(10, x + 2, y + 0.5), (40, 0.5), (1, "T17"), "mark", (2, "TUNNUS"), (70, 0)], owner)[0]
        return groups + self.entity("SEQEND", "KATU", [], [], owner, False)[0]

    def polyline(self, x, y):
        groups, owner = self.entity("POLYLINE", "KATU", ["AcDb2dPolyline"],
                                    ["mark", (66, 1)] + self.point(10, 0.0, 0.0) + [(70, 1)])
        for dx, dy, bulge in ((0, 0, 0.0), (30, 0, 0.41421356237309503), (30, 20, 0.0), (0, 20.5, -1.0)):
            groups += self.entity("VERTEX", "KATU", ["AcDbVertex", "AcDb2dVertex"], [
                "mark", "mark", *self.point(10, x + dx, y + dy), (42, bulge)], owner, False)[0]
        return groups + self.entity("SEQEND", "KATU", [], [], owner, False)[0]

    def curves(self, add, e, n):
        add("ELLIPSE", "KATU", ["AcDbEllipse"], ["mark"] + self.point(10, e, n) + self.point(11, 5.0, 0.0) + [
            (40, 0.5), (41, 0.0), (42, 6.283185307179586)])
        add("SPLINE", "KATU", ["AcDbSpline"], ["mark", (70, 8), (71, 3), (72, 8), (73, 4), (74, 0)] +
            [(40, k) for k in (0.0, 0.0, 0.0, 0.0, 1.0, 1.0, 1.0, 1.0)] + self.point(10, e, n) +
            self.point(10, e + 1, n + 2) + self.point(10, e + 3, n + 2) + self.point(10, e + 4, n))
        add("MTEXT", "OSOITE", ["AcDbMText"], ["mark"] + self.point(10, e, n) + [
            (40, 2.5), (41, 30.0), (71, 5), (72, 5), (1, "{\\fArial|b0|i0;Satama}\\Pkatu"), (7, "STANDARD")])
        add("ZZ_PIPE", "KATU", ["ZzDbPipe"], ["mark", (90, 3)] + self.point(10, e, n) + [
            (300, "betoni"), (310, bytes(range(16))), (290, 1)])

    def objects(self):
        owned = [(330, "0")] if self.version >= "AC1015" else []
        group = [(330, "A")] if self.version >= "AC1015" else []
        big = [(160, 4294967297)] if self.version >= "AC1021" else []
        self.section("OBJECTS", [(0, "DICTIONARY"), (5, "A")] + owned + [(100, "AcDbDictionary")] +
                     ([(281, 1)] if self.version >= "AC1015" else []) +
                     [(3, "ACAD_GROUP"), (350, "B"), (3, "ZZ_TIEDOT"), (350, "C"),
                      (0, "DICTIONARY"), (5, "B")] + group + [(100, "AcDbDictionary"),
                      (0, "XRECORD"), (5, "C")] + group + [(100, "AcDbXrecord"), (1, "ääni"), (40, 1.0 / 3.0),
                      (90, -70000), (70, 12), (290, 1)] + big + [(92, 4), (310, b"\x00\x0a\x0d\xff")])


SPELLINGS = {
    "r9": Spelling(b"\n", 0, "6"), "r10": Spelling(b"\r\n", 0, "bare"), "r12": Spelling(b"\r\n", 3, "pointzero", 6),
    "r13": Spelling(b"\n", 3, "pointzero", 6), "r14": Spelling(b"\r\n", 3, "10"), "r2000": Spelling(b"\r\n", 3),
    "r2004": Spelling(b"\n", 0), "r2007": Spelling(b"\r\n", 3, "pointzero", 6), "r2010": Spelling(b"\n", 3, "bare"),
    "r2013": Spelling(b"\r\n", 3, "16"), "r2018": Spelling(b"\n", 3),
}

# A drawing as short as one can be and yet have all that the odd ones spoil: R2000, LF.
SMALL = """0
SECTION
2
HEADER
9
$ACADVER
1
AC1015
9
$DWGCODEPAGE
3
ANSI_1252
0
ENDSEC
0
SECTION
2
ENTITIES
0
LINE
5
2F
100
AcDbEntity
8
0
100
AcDbLine
10
0.0
20
0.0
11
100.5
21
1.25
0
TEXT
5
30
100
AcDbEntity
8
0
100
AcDbText
10
1.0
20
2.0
40
2.5
1
nimi
0
ENDSEC
0
EOF
"""


def replaced(old, new, text=SMALL):
    assert old in text, old
    return text.replace(old, new, 1)


def odd():
    small = SMALL.encode()
    lines = SMALL.split("\n")
    mixed = b"".join(l.encode() + (b"\r\n" if i % 3 else b"\n") for i, l in enumerate(lines[:-1]))
    yield "mixed_ends", mixed
    yield "lone_returns", small.replace(b"\n", b"\r")
    yield "doubled_returns", small.replace(b"\n", b"\r\r\n")
    yield "no_end_of_line_at_the_end", small[:-1]
    yield "no_eof", small[:-len("0\nEOF\n")]
    yield "no_eof_nor_endsec", small[:-len("0\nENDSEC\n0\nEOF\n")]
    yield "empty_lines_at_the_end", small + b"\n\r\n  \n"
    yield "empty_lines_for_eof", small[:-len("0\nEOF\n")] + b"\n\n"
    yield "text_after_eof", small + b"converted by a friend\nof ours"
    yield "control_z_after_eof", small + b"\x1a"
    yield "no_header", small[small.index(b"0\nSECTION\n2\nENTITIES"):]
    yield "no_release", replaced("9\n$ACADVER\n1\nAC1015\n", "").encode()
    yield "unknown_release", replaced("AC1015", "AC9999").encode()
    yield "comments", b"999\nfirst of all\n" + replaced("10\n0.0", "999\nin between\n10\n0.0").encode()
    yield "not_a_number", replaced("11\n100.5", "11\nNaN", replaced("21\n1.25", "21\nnan(ind)")).encode()
    yield "infinite", replaced("11\n100.5", "11\n1.#INF", replaced("21\n1.25", "21\n1e999")).encode()
    yield "decimal_comma", replaced("100.5", "100,5").encode()
    yield "exponents", replaced("100.5", "1.005E+02", replaced("1.25", "+125.d-2".replace("d", "e"))).encode()
    yield "missing_handles", replaced("5\n2F\n", "", replaced("5\n30\n", "")).encode()
    yield "duplicate_handles", replaced("5\n30", "5\n2F").encode()
    yield "bad_handles", replaced("5\n30", "5\nxyz", replaced("5\n2F", "5\n")).encode()
    yield "bad_references", replaced("8\n0\n", "330\nStandard\n8\n0\n").encode()
    yield "empty_values", replaced("40\n2.5", "40\n", replaced("1\nnimi", "1\n")).encode()
    yield "blanks_around", replaced("10\n0.0", "\t 10  \n  0.0\t", replaced("0\nTEXT", "  0 \nTEXT  ")).encode()
    yield "unknown_codes", replaced("40\n2.5", "40\n2.5\n5000\nmika\n-3\nx\n85\ny").encode()
    yield "wide_codes", "".join(l.rjust(6) + "\n" if i % 2 == 0 else l + "\n"
                                for i, l in enumerate(lines[:-1])).encode()
    yield "code_page_unknown", replaced("ANSI_1252", "KOI-8").encode()
    yield "code_page_wrong", replaced("nimi", "Hämeentie").encode("utf-8")
    yield "utf8_wrong", replaced("AC1015", "AC1021", replaced("nimi", "Hämeentie")).encode("latin-1")
    yield "byte_order_mark", b"\xef\xbb\xbf" + replaced("AC1015", "AC1021", replaced("nimi", "Hämeentie")).encode()
    yield "announced_2gb", replaced("40\n2.5", "92\n2147483647\n310\n0A1B\n40\n2.5").encode()
    yield "outside_of_sections", replaced("0\nSECTION\n2\nENTITIES\n", "", replaced("0\nENDSEC\n0\nEOF", "0\nEOF")).encode()
    yield "section_without_end", replaced("0\nENDSEC\n0\nSECTION", "0\nSECTION").encode()
    yield "section_without_name", replaced("2\nENTITIES\n", "").encode()
    yield "only_eof", b"0\nEOF\n"
    yield "binary_text_after_eof", binary_small(True) + b"tail\x00"
    yield "binary_no_eof", binary_small(True)[:-6]
    nan = struct.pack("<d", float("nan"))
    yield "binary_nan", binary_small(True).replace(struct.pack("<d", 100.5), nan)
    yield "binary_bad_handle", binary_small(False).replace(b"\x052F\0", b"\x05oho\0")
    yield "binary_announced_2gb", binary_small(True).replace(
        struct.pack("<hd", 40, 2.5), struct.pack("<hihB", 92, 2147483647, 310, 2) + b"\x0a\x1b")


def small_groups():
    lines = SMALL.split("\n")
    for code, value in zip(lines[0:-1:2], lines[1:-1:2]):
        yield int(code), float(value) if value_type(int(code)) == "d" else value


def binary_small(wide):
    return binary_drawing(small_groups(), "cp1252", wide)


def broken():
    small = SMALL.encode()
    yield "empty", b""
    yield "only_empty_lines", b"\n\n\n"
    yield "prose", b"Dear reader,\nthis is no drawing.\n"
    yield "numbers", b"10\n20\n30\n40\n"
    yield "only_comments", b"999\nnothing else\n"
    yield "drawing_of_the_other_kind", b"AC1015\0\0\0\0\0\0\x06\x01"
    yield "release_mark_alone", b"AC"
    yield "release_mark_cut", b"AC1015"
    yield "utf16", SMALL.encode("utf-16")
    yield "code_not_a_number", replaced("40\n2.5", "4O\n2.5").encode()
    yield "code_with_comma", replaced("40\n2.5", "40,0\n2.5").encode()
    yield "code_too_large", replaced("40\n2.5", "64000\n2.5").encode()
    yield "empty_line_for_a_code", replaced("40\n2.5", "\n40\n2.5").encode()
    yield "text_over_two_lines", replaced("nimi", "pitkä\nnimi").encode()
    yield "cut_after_a_code", small[:small.index(b"2.5\n1\nnimi")]
    yield "cut_in_a_code", small[:small.index(b"0\n2.5\n1\nnimi")]
    whole = binary_small(True)
    yield "binary_cut_sentinel", whole[:20]
    yield "binary_changed_sentinel", whole.replace(b"\r\n\x1a", b"\n\x1a", 1)
    yield "binary_nothing_else", whole[:22]
    yield "binary_cut_code", whole[:-5]
    yield "binary_cut_number", whole[:whole.index(struct.pack("<d", 100.5)) + 3]
    yield "binary_cut_text", whole[:whole.index(b"nimi") + 2]
    text = struct.pack("<hd", 40, 2.5)
    yield "binary_unknown_code", whole.replace(text, struct.pack("<H", 64000) + b"\0" * 8)
    yield "binary_code_of_no_group", binary_small(False).replace(struct.pack("<Bd", 40, 2.5), b"\xc8" + b"\0" * 8)
    at = whole.index(text)
    yield "binary_cut_chunk", whole[:at] + struct.pack("<hB", 310, 255) + b"\1" * 100
    yield "binary_length_of_no_chunk", whole[:at] + struct.pack("<h", 1004)
    yield "binary_first_group_no_record", whole[:22] + whole[22 + 10:]


def contours():
    """Contour lines of a made-up hill country, open at the border and closed around tops and hollows."""
    cells, width, step = 40, 5.0, 1.5

    def height(i, j):
        x, y = i / cells * 7, j / cells * 7
        return 12 * math.sin(x) * math.cos(0.8 * y) + 5 * math.sin(2.1 * x + 1) * math.sin(1.7 * y) + 0.7 * x

    def crossing(level, a, b):
        """Where the side of the grid from a to b is at that level; told by its own name, so that neighbours agree."""
        a, b = min(a, b), max(a, b)
        t = (level - height(*a)) / (height(*b) - height(*a))
        return ("%.3f" % (EAST + (a[0] + t * (b[0] - a[0])) * width),
                "%.3f" % (NORTH + (a[1] + t * (b[1] - a[1])) * width))

    lines = []
    for level in [0.25 + step * k for k in range(-9, 12)]:
        follows = {}
        for i in range(cells):
            for j in range(cells):
                for corners in (((i, j), (i + 1, j), (i + 1, j + 1)), ((i, j), (i + 1, j + 1), (i, j + 1))):
                    above = [height(*c) > level for c in corners]
                    ends = [None, None]  # into and out of the triangle, higher ground on the left
                    for k in range(3):
                        if above[k] != above[(k + 1) % 3]:
                            ends[above[k]] = crossing(level, corners[k], corners[(k + 1) % 3])
                    if ends[0] is not None and ends[0] != ends[1]:
                        follows[ends[0]] = ends[1]
        while follows:
            starts = sorted(set(follows) - set(follows.values())) or sorted(follows)
            line = [starts[0]]
            while line[-1] in follows:
                line.append(follows.pop(line[-1]))
            if len(line) > 3:
                lines.append((level, line))

    text = ["9\n$ACADVER\n1\nAC1015\n0\nENDSEC\n0\nSECTION\n2\nENTITIES"]
    for number, (level, line) in enumerate(lines):
        closed = line[0] == line[-1]
        line = line[:-1] if closed else line
        text.append("0\nLWPOLYLINE\n5\n%X\n100\nAcDbEntity\n8\ncontours\n100\nAcDbPolyline\n90\n%d\n70\n%d\n38\n%.2f"
                    % (0x100 + number, len(line), 1 if closed else 0, level))
        text.extend("10\n%s\n20\n%s" % point for point in line)
    return "0\nSECTION\n2\nHEADER\n" + "\n".join(text) + "\n0\nENDSEC\n0\nEOF\n"


def drawings():
    yield "contours/contours.dxf", contours().encode()
    for release in RELEASES:
        drawing = Drawing(release)
        yield ("releases/%s.dxf" % release,
               ascii_drawing(drawing.groups, drawing.encoding, SPELLINGS[release]))
        yield ("releases/%s_binary.dxf" % release,
               binary_drawing(drawing.groups, drawing.encoding, drawing.modern))
    for name, data in odd():
        yield "odd/%s.dxf" % name, data
    for name, data in broken():
        yield "broken/%s.dxf" % name, data


def main():
    check = sys.argv[1:] == ["--check"]
    wrong = []
    for name, data in drawings():
        path = os.path.join(HERE, name)
        if check:
            if not os.path.exists(path) or open(path, "rb").read() != data:
                wrong.append(name)
            continue
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as f:
            f.write(data)
    if wrong:
        sys.exit("not what make_drawings.py writes: " + ", ".join(wrong))


main()
