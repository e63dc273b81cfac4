#!/usr/bin/env python3
"""Checks that the rooms depend on each other in one direction only, that namespaces follow the folders, and that C++
files are named in one style.

A room is a folder that ROOMS names; it may include itself and the rooms listed beside it. There are no exceptions.
Every name of ours stands in a namespace that follows its folder: qnl for what everybody uses, qnl::<room> elsewhere.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# What everybody may use, in every tree.
BASE = ["include/platform", "src/base"]
# Room: the rooms it may include besides itself and BASE. A room that stands below another is listed first.
ROOMS = {
    "include/platform": [],
    "src/base": [],
    "src/context": [],
    "src/layout": [],
    "src/mesh": ["src/context"],
    "src/input": ["src/context", "src/layout", "src/mesh"],
    "src/profile/kernels": ["src/mesh"],
    "src/profile/rays": ["src/mesh", "src/profile/kernels"],
    "src/profile/search": ["src/context", "src/mesh"],
    "src/profile/resolved": ["src/context", "src/profile/kernels"],
    "src/profile": [
        "src/context",
        "src/mesh",
        "src/profile/kernels",
        "src/profile/rays",
        "src/profile/search",
        "src/profile/resolved",
    ],
    "src/output": ["src/context", "src/layout", "src/mesh"],
    "src/probe": ["src/context", "src/mesh", "src/profile", "src/profile/rays", "src/profile/search"],
    "src/frozen": [
        "src/context",
        "src/layout",
        "src/mesh",
        "src/profile",
        "src/profile/search",
        "src/output",
        "src/probe",
    ],
    "src/job": ["src/context", "src/layout", "src/mesh", "src/input", "src/profile/search", "src/frozen"],
    "platform/host": [],
    "platform/hdf5": ["platform/host"],
    "platform/log": [],
    "platform/material": [],
    "platform/results": ["platform/hdf5"],
    "platform/kernel/mesh": ["platform/hdf5"],
    "platform/kernel/topology": ["platform/kernel/mesh"],
    "platform/kernel/boxes": ["platform/kernel/mesh"],
    "platform/kernel/rays": ["platform/kernel/mesh", "platform/kernel/topology", "platform/kernel/boxes"],
    "platform/kernel/recovery": ["platform/kernel/mesh"],
    "platform/kernel": [
        "platform/kernel/mesh",
        "platform/kernel/topology",
        "platform/kernel/boxes",
        "platform/kernel/rays",
        "platform/kernel/recovery",
    ],
    "platform/thickness": [
        "platform/kernel/mesh",
        "platform/kernel/topology",
        "platform/kernel/rays",
        "platform/kernel",
        "platform/results",
    ],
    "interop": [
        "platform/host",
        "platform/hdf5",
        "platform/kernel/mesh",
        "platform/kernel/topology",
        "platform/kernel/recovery",
    ],
    "apps/demo": ["src/layout", "platform/kernel/mesh", "platform/results", "platform/material"],
    "apps/launcher": ["src/context", "src/job"],
    "apps/frozenlayer/text": [],
    "apps/frozenlayer/project": ["apps/frozenlayer/text", "src/layout", "platform/hdf5", "platform/results"],
    "apps/frozenlayer/series": [
        "apps/frozenlayer/text",
        "platform/host",
        "apps/frozenlayer/project",
        "src/context",
        "src/mesh",
        "src/input",
        "src/profile",
        "src/profile/rays",
        "src/profile/resolved",
        "src/profile/search",
        "src/frozen",
        "src/job",
        "platform/results",
        "platform/kernel",
        "platform/kernel/mesh",
        "platform/kernel/topology",
    ],
    "apps/frozenlayer/page": [
        "apps/frozenlayer/text",
        "apps/frozenlayer/project",
        "apps/frozenlayer/series",
        "platform/host",
    ],
    "apps/frozenlayer/exports": [
        "apps/frozenlayer/text",
        "platform/host",
        "apps/frozenlayer/project",
        "apps/frozenlayer/series",
        "platform/hdf5",
    ],
    "apps/frozenlayer/info": [
        "src/context",
        "apps/frozenlayer/text",
        "apps/frozenlayer/project",
        "apps/frozenlayer/series",
        "src/layout",
        "platform/results",
    ],
    "apps/frozenlayer/imports": [
        "apps/frozenlayer/text",
        "apps/frozenlayer/info",
        "platform/host",
        "apps/frozenlayer/project",
        "src/layout",
        "interop",
        "platform/hdf5",
        "platform/results",
        "platform/material",
        "platform/kernel/mesh",
    ],
    "apps/frozenlayer/runs": [
        "apps/frozenlayer/text",
        "platform/host",
        "apps/frozenlayer/project",
        "apps/frozenlayer/series",
        "src/context",
        "src/mesh",
        "src/layout",
        "platform/results",
        "platform/kernel",
    ],
    "apps/frozenlayer/profiles": [
        "apps/frozenlayer/text",
        "apps/frozenlayer/project",
        "apps/frozenlayer/series",
        "apps/frozenlayer/exports",
        "src/mesh",
    ],
    "apps/frozenlayer/compare": [
        "apps/frozenlayer/text",
        "apps/frozenlayer/project",
        "apps/frozenlayer/series",
        "apps/frozenlayer/exports",
        "src/context",
        "platform/results",
    ],
    "apps/frozenlayer/commands": [
        "src/context",
        "apps/frozenlayer/text",
        "apps/frozenlayer/project",
        "apps/frozenlayer/series",
        "apps/frozenlayer/page",
        "apps/frozenlayer/exports",
        "apps/frozenlayer/info",
        "apps/frozenlayer/imports",
        "apps/frozenlayer/runs",
        "apps/frozenlayer/profiles",
        "apps/frozenlayer/compare",
        "apps/demo",
        "src/layout",
        "src/job",
        "platform/host",
    ],
    "apps/frozenlayer": ["apps/frozenlayer/commands", "platform/host"],
}
# Where an include is looked for, as the build does.
ROOTS = ["include", "src", "platform", "apps/frozenlayer", "apps", "."]
# Namespaces that are not qnl::<last folder>: what everybody uses, and rooms that share their parent's.
NAMESPACES = {
    "include/platform": "qnl",
    "src/base": "qnl",
    "src/context": "qnl",
    "src/profile/kernels": "qnl::profile",
    "src/profile/rays": "qnl::profile",
    "src/profile/search": "qnl::profile",
    "src/profile/resolved": "qnl::profile",
    "platform/kernel/mesh": "qnl::kernel",
    "platform/kernel/topology": "qnl::kernel",
    "platform/kernel/boxes": "qnl::kernel",
    "platform/kernel/rays": "qnl::kernel",
    "platform/kernel/recovery": "qnl::kernel",
}
# Sources of platform/host define what include/platform declares.
DECLARED_ABOVE = {"platform/host": "qnl"}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)
NAMESPACE = re.compile(r"^namespace (qnl[\w:]*) \{$", re.M)


def room_of(path):
    """The innermost room that holds a file, or None."""
    folder = path.relative_to(ROOT).parent
    return next((str(place) for place in [folder, *folder.parents] if str(place) in ROOMS), None)


def target_of(source, header):
    for root in ROOTS:
        path = (ROOT / root / header).resolve()
        if path.is_file():
            return path
    beside = source.parent / header
    return beside if beside.is_file() else None


def check_includes(path, room):
    for header in INCLUDE.findall(path.read_text(encoding="utf-8")):
        target = target_of(path, header)
        if target is None:
            yield f'includes "{header}", which does not exist'
        elif room_of(target) not in {room, *BASE, *ROOMS[room]}:
            yield f'includes "{header}" of {room_of(target)}'


def check_namespaces(path, room):
    expected = {NAMESPACES.get(room, f"qnl::{pathlib.PurePath(room).name}"), DECLARED_ABOVE.get(room)}
    for name in NAMESPACE.findall(path.read_text(encoding="utf-8")):
        if (
            not any(allowed and (name + "::").startswith(allowed + "::") for allowed in expected - {"qnl"})
            and name not in expected
        ):
            forward = not path.suffix == ".cpp" and room in ("include/platform", "src/context")
            if not forward:
                yield f"namespace {name} in {room}"


def check_order():
    """Rooms may only name rooms listed above them, so that there is no way round."""
    seen = set(BASE)
    for room, others in ROOMS.items():
        for other in others:
            if other not in seen:
                yield f"{room} is listed before {other}"
        seen.add(room)


def check_name(path):
    """C++ files are named in words joined by capitals."""
    if not re.fullmatch(r"[A-Z][A-Za-z0-9]*(_Manipulator)?", path.stem):
        yield "is not named in words joined by capitals"


def sources():
    for tree in ("include", "src", "platform", "interop", "apps"):
        for path in sorted((ROOT / tree).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                yield path


def main():
    faults = list(check_order())
    for path in sources():
        room = room_of(path)
        if room is None:
            faults.append(f"{path.relative_to(ROOT)} stands in no room")
            continue
        found = [*check_includes(path, room), *check_namespaces(path, room), *check_name(path)]
        faults += [f"{path.relative_to(ROOT)}: {fault}" for fault in found]
    for tree in ("tests", "benchmarks"):
        for path in sorted((ROOT / tree).rglob("*.[hc]*")):
            if path.suffix in (".h", ".cpp"):
                faults += [f"{path.relative_to(ROOT)} {fault}" for fault in check_name(path)]
    for fault in faults:
        print(f"layer broken: {fault}")
    print(f"layers: {len(ROOMS)} rooms, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
