#!/usr/bin/env python3
"""Fails on an include that the house forbids.

A floor includes only what stands below it; sources of the module and the library include only
standard headers, each other, and headers that the real interfaces have under the same name;
geometry headers pull in no header of the host's interface. `--list` prints the floors.
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent

# Floors from the bottom. Folders on one line share a floor.
FLOORS = [
    ["platform/arx", "platform/mfc", "platform/win32"],
    ["tam", "datastruct"],
    ["General"],
    ["GeomEnts"],
    ["GeomStructs"],
    ["ARX"],
    ["app"],
]
LIBRARY = ["tam", "datastruct", "General", "GeomEnts", "GeomStructs", "ARX", "app"]

# The embedded host: who may include whom. Only the program knows the library's exceptions, and reads a line as
# a pick of the library does.
HOST = {
    "host/dxf": ["host/dxf"],
    "host/database": ["host/database", "host/dxf", "platform"],
    "host/editor": ["host/editor", "host/database", "host/dxf", "platform"],
    "host/picture": ["host/picture", "host/editor", "host/database", "host/dxf", "platform"],
    "host/console": ["host", "platform", "tam", "GeomStructs"],
}

# Single headers of the library that the embedded host may use: inline, without an archive to link.
HOST_MAY_USE = {"tam/TextCase.h"}

# Headers that the real interfaces have. A stand-in of any other name may not be included by the
# library or the module, because the real host's build would not find it.
INTERFACE_HEADERS = set("""
    aced.h acedads.h acdb.h acdbads.h acdocman.h acestext.h acgi.h accmd.h actrans.h adesk.h
    adscodes.h adsdef.h adslib.h acutads.h acutmem.h acarray.h acadstrc.h acbr.h brbrep.h
    brgbl.h brent.h brtrav.h brbftrav.h brfltrav.h brletrav.h bredge.h brvtx.h dbsubeid.h
    dbmain.h dbents.h dbpl.h dbspline.h dbelipse.h dbregion.h dbsol3d.h dbbody.h dbsymtb.h dbapserv.h
    dbid.h dbidar.h dbptrar.h dbhandle.h dbdict.h dbsortnt.h dbjig.h dbmline.h dbhatch.h dbxrecrd.h
    dbcurve.h dbobjptr.h dbboiler.h dbxutil.h dbacis.h dbdim.h dblead.h dbxfile.h xgraph.h
    geassign.h gepnt2d.h gepnt3d.h gevec2d.h gevec3d.h gemat3d.h gescl3d.h geplane.h gegbl.h getol.h
    geextents.h gept3dar.h gearc3d.h gecurv3d.h gecint3d.h gelent3d.h gelnsg3d.h
    rxdefs.h rxobject.h rxclass.h rxboiler.h rxregsvc.h rxdlinkr.h rxditer.h rxdict.h rxnames.h rxevent.h
    windows.h tchar.h mmsystem.h winver.h shellapi.h
    afxwin.h afxext.h afxdllx.h afxcmn.h afxdtctl.h afxtempl.h afxstr.h afxres.h atlstr.h atltypes.h afx.h
    dbghelp.h winternl.h io.h direct.h share.h sys/stat.h sys/types.h sys/utime.h process.h eh.h
""".split())

INCLUDE = re.compile(r'^\s*#\s*include\s*(<([^>]+)>|"([^"]+)")')


def floor_of(folder):
    for number, folders in enumerate(FLOORS):
        if folder in folders:
            return number
    return None


def folder_of(path):
    parts = path.parts
    return "/".join(parts[:2]) if parts[0] in ("platform", "host") else parts[0]


def standard(name):
    return "/" not in name and not name.endswith(".h") or name in C_HEADERS


C_HEADERS = set("assert.h ctype.h errno.h float.h limits.h locale.h math.h signal.h stdarg.h stddef.h "
                "stdint.h stdio.h stdlib.h string.h time.h wchar.h wctype.h".split())


def problems(path):
    relative = path.relative_to(ROOT)
    folder = folder_of(relative)
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        angled, quoted = match.group(2), match.group(3)
        wrong = None
        if folder in LIBRARY:
            wrong = library_problem(relative, folder, angled, quoted)
        elif folder in HOST and quoted in HOST_MAY_USE:
            continue
        elif folder in HOST and quoted:
            target = folder_of(Path(quoted)) if "/" in quoted else folder
            if not any(target == f or target.startswith(f + "/") for f in HOST[folder]):
                wrong = f"{folder} may not include {target}"
        elif folder.startswith("platform") and quoted and "/" in quoted:
            if not quoted.startswith("platform/"):
                wrong = f"the ground floor may not include {quoted}"
        if wrong:
            yield f"{relative}:{number}: {wrong}"


def library_problem(relative, folder, angled, quoted):
    if angled is not None:
        if standard(angled):
            return None
        if angled not in INTERFACE_HEADERS:
            return f"<{angled}> is neither standard nor a header of the real interfaces"
        # Headers <Class>ARX.h are for sources that use the host anyway.
        geometry = (folder in ("GeomEnts", "GeomStructs") and relative.suffix == ".h"
                    and not relative.stem.endswith("ARX"))
        if geometry and angled not in ("windows.h", "tchar.h"):
            return f"a geometry header pulls in the interface header <{angled}>"
        return None
    target = folder_of(Path(quoted)) if "/" in quoted else folder
    if target.startswith("host") or target.startswith("platform"):
        return f"the library may not include {quoted}"
    here, there = floor_of(folder), floor_of(target)
    if there is None:
        return f'"{quoted}" stands on no floor'
    if there > here:
        return f"{folder} stands below {target} and may not include {quoted}"
    return None


def main():
    if "--list" in sys.argv:
        for folders in reversed(FLOORS):
            print("  ".join(folders))
        return 0
    found = []
    count = 0
    for top in sorted(set(LIBRARY + ["platform", "host"])):
        for path in sorted((ROOT / top).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                count += 1
                found.extend(problems(path))
    if count == 0:
        print("check_includes: no sources found", file=sys.stderr)
        return 1
    for line in found:
        print(line, file=sys.stderr)
    print(f"includes: {count} files, {len(found)} forbidden")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
