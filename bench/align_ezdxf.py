#!/usr/bin/env python3
"""What `orlinth align IN --line handle=2F --select layer=LABELS -o OUT --verify` does, with ezdxf: labels turned along
the nearest segment of a polyline, the drawing saved and compared with the one that was read.

Usage: align_ezdxf.py IN OUT
Nearest segments are found by plane geometry over plain tuples, the fastest way without further packages.
"""

import math
import sys

import ezdxf


def segments_of(vertices):
    return [(ax, ay, bx - ax, by - ay, (bx - ax) ** 2 + (by - ay) ** 2)
            for (ax, ay), (bx, by) in zip(vertices, vertices[1:])]


def nearest_direction(x, y, segments):
    best, found = math.inf, segments[0]
    for segment in segments:
        ax, ay, dx, dy, square = segment
        t = ((x - ax) * dx + (y - ay) * dy) / square
        t = 0.0 if t < 0.0 else 1.0 if t > 1.0 else t
        ex, ey = x - ax - t * dx, y - ay - t * dy
        distance = ex * ex + ey * ey
        if distance < best:
            best, found = distance, segment
    return math.atan2(found[3], found[2])


def upright(direction):
    angle = math.atan2(-math.sin(direction), -math.cos(direction))
    if angle < 0:
        angle += 6.2832
    return angle + 3.14159 if 1.5708 < angle < 4.7124 else angle


def turn(text, segments):
    hangs = text.dxf.halign != 0 or text.dxf.valign != 0
    point = text.dxf.align_point if hangs else text.dxf.insert
    angle = upright(nearest_direction(point.x, point.y, segments))
    if hangs:
        insert = text.dxf.insert - point
        text.dxf.insert = point + insert.rotate(angle - math.radians(text.dxf.rotation))
    text.dxf.rotation = math.degrees(angle)


def differences(before, after):
    """Groups that differ, by handle, from the tags of both drawings."""
    def tags(drawing):
        collector = ezdxf.lldxf.tagwriter.TagCollector
        return {entity.dxf.handle: collector.dxftags(entity) for entity in drawing.modelspace()}
    was, becomes = tags(before), tags(after)
    return sum(was[handle] != becomes[handle] for handle in was)


def main():
    drawing = ezdxf.readfile(sys.argv[1])
    street = drawing.entitydb["2F"]
    segments = segments_of([(x, y) for x, y in street.get_points("xy")])
    for text in drawing.modelspace().query('TEXT[layer=="LABELS"]'):
        turn(text, segments)
    drawing.saveas(sys.argv[2])
    changed = differences(ezdxf.readfile(sys.argv[1]), ezdxf.readfile(sys.argv[2]))
    print(f"{changed} entities differ")


if __name__ == "__main__":
    main()
