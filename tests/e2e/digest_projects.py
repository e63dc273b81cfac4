"""The projects and modes of result_digest.py: how each project is made and with which words the programs start.

All words are relative to the folder the programs run in, so that no result tells where that is.
"""

import os
import pathlib
import shutil
from dataclasses import dataclass, replace

from referee.cases import CASES, COMPLETE, Case
from referee.write_mesh import Block
from referee.write_project import write_project

EXAMPLES = pathlib.Path(os.environ.get("QNL_EXAMPLES") or pathlib.Path(__file__).resolve().parents[2] / "examples")
# (example, name of the project, stages)
READY_MADE = (("ribbed-cover", "cover", (".k4f", ".k4c", ".k4w")), ("stepped-plate", "plate", (".k4f", ".k4c")))
SERIES = "stepped-plate-vtu"
MATERIAL_OF_SERIES = "stepped-plate/Material/pp.toml"
DEMO_CELLS = 5000
DEMO_SHAPES = ("cover", "plate", "ring")
DEMO_STAGES = {"flow": (".k4f", 7), "pack": (".k4p", 7), "cool": (".k4c", 0), "warp": (".k4w", 0)}
PROBE_BLOCK = Block("mixed", bricks=(6, 3, 3), bend=0.25, seed=6)
PROBE_LIST = "7\n<List>\n1\n5\n9\n0\n1000000\n-3\nno number\n</List>\n12\ntext <List>\n  14 node\n  20\n</List>\n"
# One small project for each stage, reader and kind of file.
SHORT = (
    "flow code 6",
    "flow fibre and flakes",
    "flow sink file",
    "flow text with gas and times",
    "cool with map and gas",
    "heating-cooling",
    "warp low shrinkage",
    "cool in a flow folder",
    "probe of listed nodes",
    "demo ring flow",
)


@dataclass(frozen=True)
class Project:
    name: str
    bring: object  # writes the input files below the folder that it is given
    result: str  # base stage file
    folder: str = "project"
    part: str = "part"  # name of the project
    code: int = 4
    run: str = "1"
    times: int = 0
    log_level: int = 1
    five_words: bool = False
    single_thread: bool = False  # results hold for one thread only
    options: tuple = ()
    typed: str = ""  # on standard input
    made_by: tuple = ()  # words for `frozenlayer` that make the project from what was brought
    has_surface_files: bool = False  # FOLLOWERS make files of it


@dataclass(frozen=True)
class Programs:
    console: str
    people: str


def _launched(project, programs, threads, log_level):
    """The launcher puts the result file in place of the program's name."""
    words = [project.result, project.folder, project.part, str(project.code), project.run]
    if not project.five_words:
        words += ["x", f"--intermediate-times={project.times}"]
    return programs.console, words + [f"--threads={threads}", f"--log-level={log_level}", *project.options]


def _for_people(project, programs, threads, log_level):
    words = [programs.people, "run", project.result, "--analysis-code", str(project.code)]
    words += ["--intermediate-times", str(project.times), "--threads", str(threads), "--log-level", str(log_level)]
    return programs.people, words + [*project.options]


# Mode -> (program and words, options that choose the mode)
MODES = {
    "launcher, classic": (_launched, []),
    "launcher, corrected": (_launched, ["--corrected"]),
    "frozenlayer run": (_for_people, ["--corrected"]),
    "frozenlayer run, resolved": (_for_people, ["--resolved"]),
}
# Other files made from the results of one of the modes, where the stage has what they need.
FOLLOWED_MODE = "frozenlayer run"
FOLLOWERS = {
    "frozenlayer probe": (
        "probe",
        "project",
        "--point",
        "10,15,0",
        "--point",
        "30,20,2",
        "--nearest",
        "--out",
        "below",
    ),
    "frozenlayer export": ("export", "project", "--out", "surface"),
}


def run_command(project, mode, programs, threads, log_level):
    """The program and its words, argument 0 included."""
    words_of, options = MODES[mode]
    program, words = words_of(project, programs, threads, log_level)
    return program, words + options


def _of_case(case):
    folder = os.path.join(case.folder, "project")
    return Project(
        case.name,
        lambda work: write_project(case, work),
        os.path.join(folder, "Analysis", "Run" + case.run, f"part{case.run}{case.stage}"),
        folder,
        code=case.code,
        run=case.run,
        times=case.times,
        log_level=max(1, case.log_level),
        five_words=case.five_words,
        single_thread=case.single_thread,
    )


def _tabled():
    """Rows that differ in their mode alone are one project."""
    known = set()
    for case in CASES:
        content = replace(case, name="", corrected=False)
        if content not in known:
            known.add(content)
            yield _of_case(case)


def _probe(name, stage, list_name, log, typed=""):
    case = Case(name, stage=stage, block=PROBE_BLOCK, log=log, fibre=True, material="flake")

    def bring(work):
        path = pathlib.Path(write_project(case, work)[1])
        if stage != ".k4o":
            shutil.copy(path.with_suffix(".k4o"), path)
        if list_name:
            path.with_name(list_name).write_text(PROBE_LIST, encoding="utf-8")

    return replace(_of_case(case), bring=bring, options=("--fibre-probe",), typed=typed)


def _probes():
    yield _probe("probe of listed nodes", ".k4o", "part1_IdForFiber.txt", None)
    yield _probe("probe along smoothed normals", ".k4f", "part1.fzr_IdForFiber.txt", COMPLETE)
    yield _probe("probe of typed nodes", ".k4o", "", None, "1\n5\n0\n")


def _with_surface(name, bring, part, stage, times, made_by=()):
    result = f"project/Analysis/Run1/{part}1{stage}"
    return Project(name, bring, result, part=part, times=times, made_by=made_by, has_surface_files=True)


def _bring_example(example):
    return lambda work: shutil.copytree(EXAMPLES / example, os.path.join(work, "project"))


def _ready_made():
    for example, part, stages in READY_MADE:
        for stage in stages:
            times = len(list((EXAMPLES / example).glob(f"Analysis/Run1/{part}1_*{stage}")))
            yield _with_surface(f"{example} {part}1{stage}", _bring_example(example), part, stage, times)


def _bring_series(work):
    for example in (SERIES, MATERIAL_OF_SERIES.split("/", maxsplit=1)[0]):
        shutil.copytree(EXAMPLES / example, os.path.join(work, example))


def _imported():
    words = ("import", f"{SERIES}/b.pvd", "--out", "project", "--material", MATERIAL_OF_SERIES)
    times = len(list((EXAMPLES / SERIES).glob("*.vtu"))) - 1
    yield _with_surface(SERIES, _bring_series, "project", ".k4f", times, words)


def _demos():
    for shape in DEMO_SHAPES:
        for stage, (extension, times) in DEMO_STAGES.items():
            words = ("demo", "project", "--cells", str(DEMO_CELLS), "--shape", shape, "--stage", stage)
            yield _with_surface(f"demo {shape} {stage}", lambda work: None, "demo", extension, times, words)


def all_projects():
    for projects in (_tabled, _probes, _ready_made, _imported, _demos):
        yield from projects()


def short_projects():
    return [project for project in all_projects() if project.name in SHORT]
