"""What came out, for people and for programs."""
import collections
import json

from unit_tests import KILLED, SURVIVED, TIMED_OUT

NOT_REACHED, EQUIVALENT, NOT_TRIED, NOT_COMPILED = "not reached", "equivalent", "not tried", "not compiled"
TRIED = (KILLED, TIMED_OUT, NOT_REACHED, SURVIVED)
COLUMNS = ("tried", *TRIED, EQUIVALENT, NOT_TRIED, NOT_COMPILED)
ALIVE = (SURVIVED, NOT_REACHED)


def counts(mutants):
    count = collections.Counter(mutant.status for mutant in mutants)
    count["tried"] = sum(count[status] for status in TRIED)
    return count


def table(by_folder):
    rows = [(folder, counts(mutants)) for folder, mutants in by_folder.items()]
    if len(rows) > 1:
        rows.append(("all", counts([mutant for mutants in by_folder.values() for mutant in mutants])))
    width = max(len(folder) for folder, _ in rows)
    lines = [f"{'folder':{width}}  " + "  ".join(COLUMNS)]
    for folder, count in rows:
        lines.append(f"{folder:{width}}  " + "  ".join(f"{count[column]:{len(column)}}" for column in COLUMNS))
    return "\n".join(lines)


def listed(mutants, statuses):
    """Place and state, and below it the line to copy into the list of equivalent mutants."""
    chosen = [mutant for mutant in mutants if mutant.status in statuses]
    return "\n".join(f"{m.file}:{m.line}: {m.status}{f' ({m.by})' if m.by else ''}\n    {m.entry}" for m in chosen)


def write_json(path, by_folder, seconds):
    record = {
        "seconds": seconds,
        "folders": {
            folder: {column: counts(mutants)[column] for column in COLUMNS} for folder, mutants in by_folder.items()
        },
        "mutants": [
            {
                "folder": folder,
                "file": m.file,
                "line": m.line,
                "text": m.line_text,
                "mutation": m.mutation,
                "status": m.status,
                "by": m.by,
            }
            for folder, mutants in by_folder.items()
            for m in mutants
        ],
    }
    path.write_text(json.dumps(record, indent=1), encoding="utf-8")
