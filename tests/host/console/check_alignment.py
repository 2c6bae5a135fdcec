#!/usr/bin/python3
"""Checks a drawing that was aligned, with ezdxf as the reader and plane geometry of its own.

Usage: check_alignment.py BEFORE AFTER HANDLE FLIP
HANDLE names the LWPOLYLINE that gave the direction, FLIP is 1 when symbols were turned half a revolution.
Prints how many entities follow the line; every deviation is printed and makes the exit code 1.
"""

import math
import sys

import ezdxf

TOLERANCE = 1e-9


def nearest_direction(point, vertices):
    """The direction of the segment of `vertices` that lies nearest to `point`; the first of several."""
    def distance(segment):
        (ax, ay), (bx, by) = segment
        dx, dy = bx - ax, by - ay
        t = ((point[0] - ax) * dx + (point[1] - ay) * dy) / (dx * dx + dy * dy)
        t = min(1.0, max(0.0, t))
        return math.hypot(point[0] - ax - t * dx, point[1] - ay - t * dy)

    (ax, ay), (bx, by) = min(zip(vertices, vertices[1:]), key=distance)
    return math.atan2(by - ay, bx - ax)


def reference_point(entity):
    point = entity.dxf.insert
    if entity.dxftype() == "TEXT":
        halign, valign = entity.dxf.halign, entity.dxf.valign
        if not (valign == 0 and halign in (0, 3, 5)):
            point = entity.dxf.align_point
    return entity.ocs().to_wcs(point)


def expected(entity, vertices, flip):
    """Degrees. The command reads the line against its direction and writes its angles in short decimals of pi."""
    direction = nearest_direction(reference_point(entity), vertices)
    reversed_direction = math.atan2(-math.sin(direction), -math.cos(direction))
    if entity.dxftype() == "INSERT":
        return math.degrees(reversed_direction + (3.14159 if flip else 0))
    angle = reversed_direction + (6.2832 if reversed_direction < 0 else 0)
    return math.degrees(angle + (3.14159 if 1.5708 < angle < 4.7124 else 0))


def is_turned(entity, layers):
    if entity.dxftype() not in ("TEXT", "INSERT"):
        return False
    if entity.dxftype() == "INSERT" and entity.mcount > 1:
        return False
    layer = layers.get(entity.dxf.layer)
    return not layer.is_frozen() and not layer.is_locked()


def main():
    before, after, handle, flip = sys.argv[1], sys.argv[2], sys.argv[3], sys.argv[4] == "1"
    before, after = ezdxf.readfile(before), ezdxf.readfile(after)
    audit = after.audit()
    problems = [str(error) for error in audit.errors]
    vertices = [(x, y) for x, y, *_ in before.entitydb[handle].get_points()]
    count = 0
    for entity in before.modelspace():
        result = after.entitydb[entity.dxf.handle]
        if not is_turned(entity, before.layers):
            if entity.dxf.all_existing_dxf_attribs() != result.dxf.all_existing_dxf_attribs():
                problems.append(f"{entity} was changed")
            continue
        count += 1
        wanted = expected(entity, vertices, flip)
        if abs(result.dxf.rotation - wanted) > TOLERANCE:
            problems.append(f"{entity}: {result.dxf.rotation} instead of {wanted}")
    print("\n".join(problems + [f"{count} entities follow the line"]))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
