#!/usr/bin/python3
"""Checks a JSON report against its schema and against the drawings before and after.

Usage: check_report.py SCHEMA REPORT BEFORE AFTER
The schema by jsonschema, the drawings by ezdxf, segments and distances by plane geometry of its own. Prints how many
turned entities were found true; every deviation is printed and makes the exit code 1.
"""

import json
import math
import sys

import ezdxf
import jsonschema

TOLERANCE = 1e-9


def rotation(entity):
    return entity.dxf.get("rotation", 0.0) if entity.dxf.is_supported("rotation") else 0.0


def insertion(entity):
    return list(entity.dxf.insert)


def hanging_point(entity):
    point = entity.dxf.insert
    if entity.dxftype() == "TEXT" and not (entity.dxf.valign == 0 and entity.dxf.halign in (0, 3, 5)):
        point = entity.dxf.align_point
    return entity.ocs().to_wcs(point)


def distance(point, a, b):
    dx, dy = b[0] - a[0], b[1] - a[1]
    square = dx * dx + dy * dy
    t = 0.0 if square == 0 else ((point[0] - a[0]) * dx + (point[1] - a[1]) * dy) / square
    t = min(1.0, max(0.0, t))
    return math.hypot(point[0] - a[0] - t * dx, point[1] - a[1] - t * dy)


def reasons_fit(left, entity, layers):
    """Whether the drawing bears the reason out."""
    kind, locked = entity.dxftype(), layers.get(entity.dxf.layer).is_locked()
    array = kind == "INSERT" and entity.mcount > 1
    return {
        "lockedLayer": locked and (not left["selected"] or (kind in ("TEXT", "INSERT") and not array)),
        "classNotTurned": kind not in ("TEXT", "INSERT", "ATTDEF"),
        "arrayInsert": array,
        "attributeDefinition": kind == "ATTDEF",
    }.get(left["reason"], False)


def check(report, before, after):
    faults, last = [], {}
    layers = before.layers

    def expect(handle, what, told, found):
        if told != found:
            faults.append(f"{handle}: {what} is told as {told} and is {found}")

    for run in report["runs"]:
        vertices = run["line"]["vertices"] if run["line"] else []
        for turned in run["turned"]:
            handle = turned["handle"]
            was, becomes = before.entitydb[handle], after.entitydb[handle]
            expect(handle, "the type", turned["type"], becomes.dxftype())
            expect(handle, "the layer", turned["layer"], becomes.dxf.layer)
            name = becomes.dxf.text if becomes.dxftype() == "TEXT" else becomes.dxf.name
            expect(handle, "the name", turned["name"], name)
            first = last.get(handle)
            expect(handle, "the angle before", turned["angleBefore"],
                   first["angleAfter"] if first else rotation(was))
            expect(handle, "the insertion before", turned["insertionBefore"],
                   first["insertionAfter"] if first else insertion(was))
            last[handle] = turned
            hangs = hanging_point(was)
            if math.dist(hangs, turned["hangsAt"]) > TOLERANCE:
                faults.append(f"{handle}: hangs at {hangs}, told as {turned['hangsAt']}")
            if not vertices:
                continue
            distances = [distance(hangs, a, b) for a, b in zip(vertices, vertices[1:])]
            if abs(min(distances) - turned["distance"]) > TOLERANCE:
                faults.append(f"{handle}: is {min(distances)} away, told as {turned['distance']}")
            if distances[turned["segment"]] > min(distances) + TOLERANCE:
                faults.append(f"{handle}: segment {turned['segment']} is not the nearest")
        for left in run["left"]:
            if not reasons_fit(left, before.entitydb[left["handle"]], layers):
                faults.append(f"{left['handle']}: was not left for {left['reason']}")
        count = len(run["turned"]) + sum(left["selected"] for left in run["left"])
        if not run["takenBack"]:
            expect("a run", "the count of the selection", run["selected"], count)
    for handle, turned in last.items():
        expect(handle, "the angle", turned["angleAfter"], rotation(after.entitydb[handle]))
        expect(handle, "the insertion", turned["insertionAfter"], insertion(after.entitydb[handle]))
    for entity in after.modelspace().query("TEXT INSERT MTEXT ATTDEF"):
        was = before.entitydb[entity.dxf.handle]
        if entity.dxf.handle not in last and rotation(entity) != rotation(was):
            faults.append(f"{entity.dxf.handle}: was turned, which is not told")
    runs = [run for run in report["runs"] if not run["takenBack"]]
    totals = report["totals"]
    reasons = {left["handle"]: left["reason"] for run in runs for left in run["left"] if left["handle"] not in last}
    same = [handle for handle, turned in last.items()
            if turned["angleAfter"] == rotation(before.entitydb[handle])
            and turned["insertionAfter"] == insertion(before.entitydb[handle])]
    expect("totals", "turned", totals["turned"], len(last))
    expect("totals", "unchanged", totals["unchanged"], len(same))
    expect("totals", "left", totals["left"], len(reasons))
    expect("totals", "selected", totals["selected"], sum(run["selected"] for run in runs))
    for reason, count in totals["leftByReason"].items():
        expect("totals", reason, count, sum(told == reason for told in reasons.values()))
    return faults, len(last)


def main():
    schema, report = (json.load(open(name, encoding="utf-8")) for name in sys.argv[1:3])
    jsonschema.Draft202012Validator.check_schema(schema)
    jsonschema.Draft202012Validator(schema).validate(report)
    faults, count = check(report, ezdxf.readfile(sys.argv[3]), ezdxf.readfile(sys.argv[4]))
    for fault in faults:
        print(fault)
    print(f"{count} turned")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
