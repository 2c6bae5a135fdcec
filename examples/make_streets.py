#!/usr/bin/python3
"""Generates streets.dxf, the drawing that the documentation and the tests work on.

A quarter of an invented town in the map grid ETRS-GK25 (easting 25.5 million, northing 6.67 million,
metres). All labels and symbols lie level, as surveyors' programs place them, and wait to be turned along
the streets. Beside the ordinary ones there is one of each kind that a drawing may hold: every
justification, mirrored, oblique and extruded texts, symbols with attributes, arrays, texts on a locked,
a frozen and a switched-off layer.

The direction lines are
    2F  LWPOLYLINE   Mäntyrinteentie, the main street
    30  LINE         Kivikuja
    31  POLYLINE     Näköalapolku, a 3D polyline that climbs
    37  SPLINE       Purokaari
    38  LWPOLYLINE   Öljymyllynaukio, the square, closed

Usage: make_streets.py [FILE]     (default: streets.dxf beside this script)
Needs the package python3-ezdxf. The result is the same on every run.
"""

import math
import pathlib
import sys

import ezdxf
from ezdxf.enums import MAP_TEXT_ENUM_TO_ALIGN_FLAGS as MAP_ALIGN_TO_FLAGS, TextEntityAlignment as Align

EAST, NORTH = 25_496_000.0, 6_672_000.0

MAIN_STREET = [(0, 0), (62, 8), (118, 31), (152, 74), (166, 126), (206, 161), (270, 169), (334, 148)]
STONE_LANE = [(118, 31), (155, -62)]
VIEW_PATH = [(166, 126, 12.0), (150, 160, 15.5), (128, 178, 21.25), (118, 212, 27.0)]
BROOK_BEND = [(270, 169), (292, 128), (268, 92), (296, 50), (330, 42)]
MILL_SQUARE = [(196, 40), (238, 34), (244, 70), (202, 76)]


def at(x, y):
    """The map point of a local point, to the millimetre."""
    return round(EAST + x, 3), round(NORTH + y, 3)


def at3(x, y, z):
    return (*at(x, y), round(z, 3))


def along(line, length, offset=0.0):
    """The local point `length` from the start of `line`, `offset` to its left, and the direction there."""
    for (x1, y1), (x2, y2) in zip(line, line[1:]):
        segment = math.hypot(x2 - x1, y2 - y1)
        if length <= segment:
            ux, uy = (x2 - x1) / segment, (y2 - y1) / segment
            return x1 + ux * length - uy * offset, y1 + uy * length + ux * offset, math.atan2(uy, ux)
        length -= segment
    raise ValueError("the line is shorter than that")


def baseline_start(point, words, align, height, width):
    """Where the baseline of a level text begins; a justified text carries this point beside its own."""
    horizontal, vertical = MAP_ALIGN_TO_FLAGS[align]
    length = 0.8 * height * width * len(words)
    x = {0: 0.0, 1: -length / 2, 2: -length, 4: -length / 2}[horizontal]
    y = -height / 2 if horizontal == 4 else {0: 0.0, 1: height / 3, 2: -height / 2, 3: -height}[vertical]
    return at(point[0] + x, point[1] + y)


def text(space, words, point, layer, align=Align.MIDDLE_CENTER, height=2.0, **attribs):
    entity = space.add_text(words, height=height, dxfattribs={"layer": layer, "style": "NIMISTO", **attribs})
    entity.set_placement(at(*point), align=align)
    entity.dxf.insert = baseline_start(point, words, align, height, attribs.get("width", 1.0))
    return entity


def set_up_layers(doc):
    doc.styles.add("NIMISTO", font="arial.ttf")
    for name, color in [("KATU", 8), ("KADUNNIMI", 5), ("OSOITENUMERO", 1), ("SYMBOLI", 30), ("RAKENNUS", 9),
                        ("PUU", 3), ("KORKEUS", 34), ("SELITE", 7)]:
        doc.layers.add(name, color=color)
    doc.layers.add("TARKISTETTU", color=6).lock()
    doc.layers.add("VANHA NIMISTÖ", color=252).freeze()
    doc.layers.add("APUVIIVAT", color=253).off()


def set_up_blocks(doc):
    lamp = doc.blocks.new("VALAISIN")
    lamp.add_circle((0, 0), 0.6)
    lamp.add_line((0, 0), (2.4, 0))
    lamp.add_lwpolyline([(2.4, -0.4), (3.2, -0.4), (3.2, 0.4), (2.4, 0.4)], close=True)

    drain = doc.blocks.new("SADEVESIKAIVO")
    drain.add_lwpolyline([(-0.7, -0.4), (0.7, -0.4), (0.7, 0.4), (-0.7, 0.4)], close=True)
    drain.add_line((-0.7, 0), (0.7, 0))

    sign = doc.blocks.new("LIIKENNEMERKKI")
    sign.add_lwpolyline([(-1, 0), (1, 0), (0, 1.7)], close=True)
    sign.add_attdef("NUMERO", (0, -1.6), dxfattribs={"height": 0.9})
    sign.add_attdef("TEKSTI", (0, -2.8), dxfattribs={"height": 0.9})

    tree = doc.blocks.new("LEHTIPUU")
    tree.add_circle((0, 0), 2.2)
    tree.add_line((-0.5, 0), (0.5, 0))
    tree.add_line((0, -0.5), (0, 0.5))

    bay = doc.blocks.new("PYSÄKÖINTIRUUTU")
    bay.add_lwpolyline([(0, 0), (2.5, 0), (2.5, 5), (0, 5)])


def add_streets(space):
    """First of all, so that the handles of the direction lines are the ones that the heading lists."""
    street = {"layer": "KATU"}
    space.add_lwpolyline([at(*p) for p in MAIN_STREET], dxfattribs=street)
    space.add_line(at(*STONE_LANE[0]), at(*STONE_LANE[1]), dxfattribs=street)
    space.add_polyline3d([at3(*p) for p in VIEW_PATH], dxfattribs=street)
    space.add_open_spline([at3(x, y, 0) for x, y in BROOK_BEND], degree=3, dxfattribs=street)
    space.add_lwpolyline([at(*p) for p in MILL_SQUARE], close=True, dxfattribs=street)


def add_roundabout(space):
    """Direction lines made of arcs: a circle, an arc and a polyline with a bulge."""
    space.add_circle(at(345, 139), 9, dxfattribs={"layer": "KATU"})
    space.add_arc(at(155, -62), 8, 200, 20, dxfattribs={"layer": "KATU"})
    x, y = STONE_LANE[1]
    space.add_lwpolyline([(*at(x - 7, y - 3), 1.0), (*at(x + 7, y - 3), 0.0)], format="xyb",
                         dxfattribs={"layer": "KATU"})


def add_names(space):
    for words, line, length in [("Mäntyrinteentie", MAIN_STREET, 40), ("Mäntyrinteentie", MAIN_STREET, 205),
                                ("Tallbackavägen", MAIN_STREET, 315), ("Kivikuja", STONE_LANE, 55)]:
        x, y, _ = along(line, length)
        text(space, words, (x, y), "KADUNNIMI", height=4.0)
    text(space, "Näköalapolku", (145, 172), "KADUNNIMI", height=3.0)
    text(space, "Purokaari", (282, 108), "KADUNNIMI", Align.CENTER, height=3.0, oblique=12)
    text(space, "Öljymyllynaukio", (220, 36), "KADUNNIMI", Align.BOTTOM_CENTER, height=3.0, width=0.85)


def add_house(space, x, y, direction, left):
    """A house of 12 by 9 metres whose front lies along the street, behind its number."""
    depth = 1 if left else -1
    ux, uy = math.cos(direction), math.sin(direction)
    corners = [(-6, 4), (6, 4), (6, 13), (-6, 13)]
    space.add_lwpolyline([at(x + ux * a - uy * b * depth, y + uy * a + ux * b * depth) for a, b in corners],
                         close=True, dxfattribs={"layer": "RAKENNUS"})


def add_numbers(space):
    """Even numbers on the left side, odd ones on the right; every justification comes up."""
    alignments = [a for a in Align if a not in (Align.ALIGNED, Align.FIT)]
    for i in range(16):
        left = i % 2 == 1
        x, y, direction = along(MAIN_STREET, 24 + 22 * i, 9.5 if left else -9.5)
        words = f"{i + 1}" if i % 5 else f"{i + 1} a–b"
        text(space, words, (x, y), "OSOITENUMERO", alignments[i % len(alignments)])
        if i % 4 != 2:
            add_house(space, x, y, direction, left)
    for i in range(4):
        x, y, direction = along(STONE_LANE, 20 + 20 * i, 8 if i % 2 else -8)
        text(space, f"{i + 1}", (x, y), "OSOITENUMERO", Align.LEFT)
        add_house(space, x, y, direction, i % 2 == 1)
    for i, (x, y) in enumerate([(278, 146), (276, 108), (288, 70)]):
        text(space, f"{2 * i + 1}", (x - 9, y), "OSOITENUMERO", Align.RIGHT)


def add_heights(space):
    for x, y, z in VIEW_PATH:
        text(space, f"+{z:.2f}".replace(".", ","), (x + 3, y + 1), "KORKEUS", Align.LEFT, height=1.5)


def add_symbols(space):
    for i in range(11):
        x, y, _ = along(MAIN_STREET, 12 + 34 * i, 5.5)
        space.add_blockref("VALAISIN", at(x, y), dxfattribs={"layer": "SYMBOLI"})
    for i in range(6):
        x, y, _ = along(MAIN_STREET, 30 + 58 * i, -3.5)
        space.add_blockref("SADEVESIKAIVO", at(x, y), dxfattribs={"layer": "SYMBOLI", "rotation": 15.0 * i})
    for i, (number, words) in enumerate([("231", "Väistä"), ("361", "30"), ("511", "Suojatie")]):
        x, y, _ = along(MAIN_STREET, 80 + 90 * i, 7)
        sign = space.add_blockref("LIIKENNEMERKKI", at(x, y), dxfattribs={"layer": "SYMBOLI"})
        sign.add_attrib("NUMERO", number, at(x, y - 1.6), dxfattribs={"height": 0.9, "layer": "SYMBOLI"})
        sign.add_attrib("TEKSTI", words, at(x, y - 2.8), dxfattribs={"height": 0.9, "layer": "SYMBOLI"})
    for x, y in [(206, 46), (214, 62), (226, 44), (234, 64)]:
        space.add_blockref("LEHTIPUU", at(x, y), dxfattribs={"layer": "PUU", "xscale": -1.0 if x > 220 else 1.0})
    space.add_blockref("PYSÄKÖINTIRUUTU", at(208, 48),
                       dxfattribs={"layer": "SYMBOLI", "column_count": 6, "column_spacing": 2.5})


def add_rarities(space):
    """Texts whose own form decides where they stand and how they read."""
    def near_main(length, offset=-16):
        return along(MAIN_STREET, length, offset)[:2]

    text(space, "peilattu", near_main(70), "SELITE", text_generation_flag=2)
    text(space, "ylösalaisin", near_main(110), "SELITE", text_generation_flag=4)
    text(space, "molemmin päin", near_main(150), "SELITE", Align.LEFT, text_generation_flag=6)
    text(space, "vanha kulma", near_main(190), "SELITE", Align.LEFT, rotation=137.5)
    text(space, "yli kierroksen", near_main(230), "SELITE", Align.TOP_RIGHT, rotation=412.25)
    text(space, "alle nollan", near_main(270), "SELITE", Align.LEFT, rotation=-33.0)
    x, y = near_main(350)
    # Seen from below: x of the text's own coordinate system runs against the map's.
    below = space.add_text("takaa", height=2.0, dxfattribs={
        "layer": "SELITE", "style": "NIMISTO", "extrusion": (0, 0, -1)})
    east, north = at(x, y)
    below.set_placement((-east, north), align=Align.MIDDLE_CENTER)
    for words, align, length in [("tasattu", Align.ALIGNED, 300), ("sovitettu", Align.FIT, 326)]:
        x, y = near_main(length, 20)
        entity = space.add_text(words, height=2.0, dxfattribs={"layer": "SELITE", "style": "NIMISTO"})
        entity.set_placement(at(x, y), at(x + 12, y), align=align)
    space.add_point(at(220, 55), dxfattribs={"layer": "SELITE"})
    space.add_attdef("HUOMAUTUS", at(180, 100), dxfattribs={"layer": "SELITE", "height": 1.5})
    space.add_mtext("Mäntyrinteen kaava-alue\\PETRS-GK25, N2000",
                    dxfattribs={"layer": "SELITE", "char_height": 3.0, "insert": at(10, 190)})


def add_protected(space):
    x, y, _ = along(MAIN_STREET, 130, 14)
    text(space, "Tarkistettu 12.3.", (x, y), "TARKISTETTU")
    space.add_blockref("VALAISIN", at(x + 4, y + 4), dxfattribs={"layer": "TARKISTETTU"})
    x, y, _ = along(MAIN_STREET, 90, 3)
    text(space, "Mäntyrinteenpolku", (x, y), "VANHA NIMISTÖ", height=4.0)
    x, y, _ = along(MAIN_STREET, 240, 3)
    text(space, "mittalinja", (x, y), "APUVIIVAT")


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parent / "streets.dxf"
    ezdxf.options.write_fixed_meta_data_for_testing = True
    doc = ezdxf.new("R2010", units=6)
    space = doc.modelspace()
    add_streets(space)
    set_up_layers(doc)
    set_up_blocks(doc)
    add_roundabout(space)
    add_names(space)
    add_numbers(space)
    add_heights(space)
    add_symbols(space)
    add_rarities(space)
    add_protected(space)
    space.reset_extents(at3(-20, -80, 0), at3(360, 220, 0))
    doc.set_modelspace_vport(height=300, center=at(170, 70))
    doc.saveas(target)


if __name__ == "__main__":
    main()
