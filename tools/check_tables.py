#!/usr/bin/env python3
"""Checks that the tables of docs/formats.md say what the tables of the sources say: stages, their items, and the items
of our results with their numbers, names, units and conditions."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
STAGES = ROOT / "include/platform/Stages.h"
QUANTITIES = ROOT / "src/context/OutputQuantities.h"
FORMATS = ROOT / "docs/formats.md"

STAGE = re.compile(r'^inline constexpr Stage k\w+\{"([^"]+)", "([^"]+)", "([^"]+)", StageKind::(\w+)\};$', re.M)
ITEM_NUMBER = re.compile(r"\b(k\w+) = (\d+)")
STAGE_ITEM = re.compile(r'\{StageKind::(\w+), (k\w+), "([^"]*)", "([^"]*)", QNLRESULT_(\w+)\}')
QUANTITY = re.compile(r'\{(\d+|kNoItem),\s*"([^"]*)",\s*"([^"]*)",\s*(\w+),')
FIBRE_AND_THICKNESS = {"Fibre": ("kFibreExtension", "fibre"), "Thickness": ("kThicknessExtension", "thickness")}

# A condition of the sources as the document words it.
WORDING = {
    "Always": "always",
    "IsCool": "cool",
    "IsNotCool": "not cool",
    "HasGasAndIsNotCool": "gas, not cool",
    "HasFillCoolingTimeAndIsNotCool": "flow item 16 present, not cool",
    "HasFlakesAndIsNotCool": "flakes, not cool",
    "HasIntermediateTimesAndIsNotCool": "marker log complete, not cool",
    "HasFlowAndIsNotCool": "flow or pack, not cool",
}
# Beyond its condition an item may depend on its values.
BY_VALUE = {16: ", not zero everywhere"}


def rows_under(heading):
    """The rows of the table under a heading, without its own head."""
    text = FORMATS.read_text(encoding="utf-8").split(f"### {heading}\n", 1)[1]
    lines = text.lstrip().split("\n")
    rows = []
    for line in lines:
        if not line.startswith("|"):
            break
        rows.append([cell.strip() for cell in line.strip().strip("|").split("|")])
    return rows[2:]


def stage_items():
    """Pairs of the stage cell, as documented, and (number, unit) of its items."""
    source = STAGES.read_text(encoding="utf-8")
    numbers = dict(ITEM_NUMBER.findall(source))
    cells = {}
    for extension, _, title, kind in STAGE.findall(source):
        cells.setdefault(kind, []).append(f"{title} `{extension}`")
    for kind, (constant, title) in FIBRE_AND_THICKNESS.items():
        cells[kind] = [f'{title} `{re.search(constant + r" = .(.[a-z0-9]+).;", source).group(1)}`']
    items = {}
    for kind, name, _, unit, _ in STAGE_ITEM.findall(source):
        items.setdefault(kind, []).append((numbers[name], unit))
    return [(", ".join(cells[kind]), found) for kind, found in items.items()]


def documented_stage_items():
    for stage, items in rows_under("Stage items"):
        found = []
        for part in items.split(";"):
            ids = re.match(r"\s*(\d+(?:, \d+)*)", part)
            several = re.findall(r"(?:^|, )(\d+) ", part.strip())
            ids = several if len(several) > 1 else ids.group(1).split(", ")
            found += [(number, part) for number in ids]
        yield stage, found


def check_stage_items():
    spelling = {"\\u00b0C": "degC", "g/cm\\u00b3": "g/cm3"}
    expected, documented = stage_items(), list(documented_stage_items())
    if [stage for stage, _ in expected] != [stage for stage, _ in documented]:
        yield f"stages are {[s for s, _ in expected]}, documented {[s for s, _ in documented]}"
        return
    for (stage, items), (_, texts) in zip(expected, documented):
        if [number for number, _ in items] != [number for number, _ in texts]:
            yield f"{stage}: items {[n for n, _ in items]}, documented {[n for n, _ in texts]}"
            continue
        for (number, unit), (_, text) in zip(items, texts):
            shown = spelling.get(unit, unit)
            if shown and not text.rstrip().rstrip(",").split(" (")[0].endswith(" " + shown):
                yield f"{stage} item {number}: unit {shown} is not in {text.strip()!r}"


def quantities():
    source = QUANTITIES.read_text(encoding="utf-8")
    rows = [
        (int(number), name, unit, condition)
        for number, name, unit, condition in QUANTITY.findall(source)
        if number != "kNoItem"
    ]
    return sorted(rows)


def documented_quantities():
    for number, name, unit, _, written in rows_under("Frozen-layer items"):
        yield int(number), name, unit, written


def check_quantities():
    expected = [
        (number, name, unit, WORDING[condition] + BY_VALUE.get(number, ""))
        for number, name, unit, condition in quantities()
    ]
    documented = list(documented_quantities())
    for wanted, found in zip(expected, documented):
        if wanted != found:
            yield f"item {wanted}, documented {found}"
    if len(expected) != len(documented):
        yield f"{len(expected)} items, {len(documented)} documented"


def main():
    faults = list(check_stage_items()) + list(check_quantities())
    for fault in faults:
        print(f"docs/formats.md: {fault}")
    items, stages = len(quantities()), len(stage_items())
    print(f"tables: {items} items, {stages} kinds of stage files, {len(faults)} faults")
    return 1 if faults or items < 20 or stages < 5 else 0


if __name__ == "__main__":
    sys.exit(main())
