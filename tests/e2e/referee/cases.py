"""The table of made projects: one row per case."""

from dataclasses import dataclass, field

import numpy as np

from .write_mesh import Block

COMPLETE = "[EOF] \n"
OPEN = "2 1.0\n"


@dataclass(frozen=True)
class Case:
    name: str
    stage: str = ".k4f"
    reader: str = "flow"  # layout of the stage file: flow, cool or warp
    block: Block = field(default_factory=Block)
    code: int = 4
    run: str = "1"
    times: int = 0
    log: str | None = COMPLETE
    material: str = "pvt"
    corrected: bool = False
    text: bool = False
    header_code: int = 1007
    warp_columns: int = 17
    gas_item: bool = False
    gas_never: bool = False
    cooling_item: tuple = ()  # output times whose file holds the cooling time
    id_map: bool = False
    warp_items: bool = False
    fibre: bool = False
    shrinkage: float = 17.0
    shrinkage_power: int = 1
    still_shrinkage: bool = False
    stray_shrinkage: float = 0.0  # at labels that no node has
    negative_cooling: bool = False
    shorter: bool = False  # later files hold six tenths of the labels
    longer: bool = False  # files hold labels beyond the mesh
    folder: str = ""
    missing: tuple = ()
    log_level: int = 0
    five_words: bool = False
    single_thread: bool = False  # results hold for one thread only
    seed: int = 1


HEXA = Block()
BENT = Block("hexa", bend=0.35, seed=2)
WEDGE = Block("wedge", bend=0.3, seed=3)
TETRA = Block("tetra", bend=0.3, seed=4)
PYRAMID = Block("pyramid", bricks=(3, 3, 2), bend=0.2, seed=5)
MIXED = Block("mixed", bricks=(6, 3, 3), bend=0.25, seed=6)
STRAIGHT_MIXED = Block("mixed", bricks=(6, 3, 3), runner=False, labels=False, seed=7)
SINGLE = Block("wedge", single_precision=True, bend=0.3, seed=8)
THIN = Block("hexa", bricks=(6, 5, 6), bend=0.3, tolerance=0.21, seed=9)
WIDE = Block("tetra", bricks=(4, 3, 2), bend=0.3, tolerance=2.5, seed=10)
STEP = Block("wedge", bricks=(6, 4, 4), shape="step", seed=11)
HOLE = Block("tetra", bricks=(5, 5, 2), shape="hole", runner=False, seed=12)
CORNERS = Block("hexa", bricks=(6, 4, 4), shape="corners", bend=0.2, seed=13)
PYRAMIDS = Block("pyramid", bricks=(3, 3, 2), shape="step", seed=14)
TILTED_HEXA = Block("hexa", bricks=(5, 4, 4), tilted=True, seed=15)
TILTED_TETRA = Block("tetra", bricks=(4, 3, 3), tilted=True, shape="step", seed=16)
TILTED_MIXED = Block("mixed", bricks=(6, 3, 3), tilted=True, seed=17)
PIECES = Block("mixed", bricks=(6, 3, 3), bend=0.2, pieces=3, seed=19)
LONG = Block("hexa", bricks=(200, 1, 1), size=(100.0, 0.5, 0.5), bend=0.2, runner=False, seed=18)
BLOCKS = (
    HEXA,
    BENT,
    WEDGE,
    TETRA,
    PYRAMID,
    MIXED,
    STRAIGHT_MIXED,
    SINGLE,
    THIN,
    WIDE,
    STEP,
    HOLE,
    CORNERS,
    PYRAMIDS,
    TILTED_HEXA,
    TILTED_TETRA,
    TILTED_MIXED,
    PIECES,
    LONG,
)


def _codes():
    for code in range(1, 10):
        block = BLOCKS[code % len(BLOCKS)]
        for corrected in (False, True):
            yield Case(
                f"flow code {code}" + (" corrected" if corrected else ""),
                block=block,
                code=code,
                times=2,
                gas_item=True,
                cooling_item=(1, 2) if code % 2 else (),
                corrected=corrected,
                seed=code,
            )


def _meshes():
    for number, block in enumerate(BLOCKS):
        yield Case(f"flow mesh {number}", block=block, times=1, seed=20 + number)
        yield Case(f"cool mesh {number}", ".k4c", "cool", block, log=None, seed=40 + number)
        yield Case(f"warp mesh {number}", ".k4w", "warp", block, log=None, corrected=True, seed=60 + number)


SPECIAL = (
    Case("flow without log", log=None, times=2, block=BENT),
    Case("flow with open log", log=OPEN, times=1, block=TETRA),
    Case("flow with open log and gas", log=OPEN, code=1, gas_item=True, times=1, block=WEDGE),
    Case("flow with gas but no gas item", code=6, times=1, block=BENT),
    Case("flow without shrinkage", log=None, still_shrinkage=True, block=BENT),
    Case("flow low shrinkage", shrinkage=0.8, block=MIXED, times=2),
    Case("flow cooling time at the base only", cooling_item=(0,), times=2, block=BENT),
    Case("flow cooling time at the base only corrected", cooling_item=(0,), times=2, corrected=True, block=BENT),
    Case("flow middle time missing", times=3, missing=(2,), block=TETRA),
    Case("flow base time missing", times=2, missing=(0,), block=TETRA),
    Case("flow eleven times", times=11, block=PYRAMID),
    Case("flow five words", run="2", times=2, five_words=True, block=BENT),
    Case("flow dense material", material="dense", times=1, block=THIN),
    Case("flow thermoset", material="thermoset", times=1, block=BENT),
    Case("flow fibre and flakes", material="flake", fibre=True, times=2, block=BENT),
    Case("flow fibre and flakes corrected", material="flake", fibre=True, times=2, corrected=True, block=MIXED),
    Case("flow fibre and flakes logged", material="flake", fibre=True, times=1, block=TETRA, log_level=2),
    Case("flow fibre, no flakes", fibre=True, times=1, block=BENT),
    Case("flow flakes, no fibre", material="flake", block=BENT),
    Case("flow flakes, open log", material="flake", fibre=True, log=OPEN, block=BENT),
    Case("flow sink file", times=1, block=WEDGE, log_level=1),
    Case("flow sink file without labels", block=STRAIGHT_MIXED, log_level=1),
    Case("flow shorter later", times=2, shorter=True, block=TETRA),
    Case("flow shorter later corrected", times=2, shorter=True, block=TETRA, corrected=True),
    Case("flow longer", times=1, longer=True, block=WEDGE),
    Case("flow many intervals", log=None, block=LONG, times=1, corrected=True),
    Case("pack", ".k4p", times=1, block=BENT, code=2),
    Case("pack with gas", ".k4p", times=2, block=TETRA, code=7, gas_item=True, cooling_item=(0, 1, 2)),
    Case("pack corrected", ".k4p", times=2, block=MIXED, code=1, gas_item=True, corrected=True),
    Case("pack with fibre", ".k4p", fibre=True, material="flake", block=BENT),
    Case("pack without log", ".k4p", log=None, block=BENT),
    Case("cool with gas", ".k4c", "cool", BENT, gas_item=True, times=1),
    Case("cool with gas corrected", ".k4c", "cool", MIXED, gas_item=True, times=1, corrected=True),
    Case("cool with gas nowhere", ".k4c", "cool", TETRA, gas_item=True, gas_never=True),
    Case("cool with negative times", ".k4c", "cool", BENT, negative_cooling=True),
    Case("cool shorter later", ".k4c", "cool", TETRA, shorter=True, times=1, gas_item=True),
    Case("cool longer corrected", ".k4c", "cool", TETRA, longer=True, corrected=True),
    Case("cool with map", ".k4c", "cool", WEDGE, id_map=True, times=2),
    Case("cool with map and gas", ".k4c", "cool", WEDGE, id_map=True, gas_item=True),
    Case("cool with map corrected", ".k4c", "cool", WEDGE, id_map=True, times=2, corrected=True),
    Case("heating-cooling", ".k4hc", "cool", MIXED, times=1),
    Case("heating-cooling thin", ".k4hc", "cool", THIN, gas_item=True),
    Case("cool thermoset", ".k4c", "cool", BENT, material="thermoset"),
    Case("warp", ".k4w", "warp", BENT),
    Case("warp low shrinkage", ".k4w", "warp", TETRA, shrinkage=1.7, times=1),
    Case("warp low shrinkage corrected", ".k4w", "warp", TETRA, shrinkage=1.7, times=1, corrected=True),
    Case("warp skewed", ".k4w", "warp", TETRA, shrinkage_power=4, corrected=True),
    Case("warp stray", ".k4w", "warp", TETRA, shrinkage=0.5, stray_shrinkage=2.5, corrected=True),
    Case("warp longer", ".k4w", "warp", TETRA, shrinkage=0.5, longer=True, corrected=True),
    Case("warp shorter later", ".k4w", "warp", TETRA, shorter=True, times=1),
    Case("warp shorter later corrected", ".k4w", "warp", TETRA, shorter=True, times=1, corrected=True),
    Case("warp thin corrected", ".k4w", "warp", THIN, shrinkage=2.5, corrected=True),
    Case("cool in a warp folder", ".k4c", "cool", BENT, warp_items=True, folder="old.k4w", single_thread=True),
    Case(
        "cool in a warp folder, gas, later time",
        ".k4c",
        "cool",
        TETRA,
        warp_items=True,
        gas_item=True,
        folder="old.k4w",
        times=1,
        single_thread=True,
    ),
    Case("cool in a warp folder corrected", ".k4c", "cool", BENT, warp_items=True, folder="old.k4w", corrected=True),
    Case("warp in a flow folder", ".k4w", "warp", BENT, folder="old.k4f", times=1),
    Case("warp in a flow folder corrected", ".k4w", "warp", BENT, folder="old.k4f", times=1, corrected=True),
    Case("cool in a flow folder", ".k4c", "cool", MIXED, folder="old.k4f", times=2),
    Case("cool in a flow folder corrected", ".k4c", "cool", MIXED, folder="old.k4f", times=2, corrected=True),
    Case("flow in a pack folder", folder="old.k4p", code=2, times=1, block=WEDGE),
    Case("flow text", text=True, block=BENT, log=None),
    Case("flow text with times", text=True, block=TETRA, times=2),
    Case("flow text with times corrected", text=True, block=TETRA, times=2, corrected=True),
    Case("flow text with gas", text=True, header_code=1012, block=BENT, log=None, times=1),
    Case("flow text with gas corrected", text=True, header_code=1012, block=MIXED, log=None, corrected=True),
    Case("flow text with gas and times", text=True, header_code=1012, block=WEDGE, times=1),
    Case("cool text", ".k4c", "cool", BENT, text=True, times=1),
    Case("cool text corrected", ".k4c", "cool", MIXED, text=True, corrected=True),
    Case("warp text", ".k4w", "warp", BENT, text=True),
    Case("warp text corrected", ".k4w", "warp", TETRA, text=True, corrected=True, shrinkage=2.0),
    Case("warp text in a flow folder", ".k4w", "warp", BENT, text=True, folder="old.k4f", times=1, corrected=True),
    Case("warp text of 29", ".k4w", "warp", TETRA, text=True, warp_columns=29, folder="old.k4f", corrected=True),
    Case(
        "warp text of 14",
        ".k4w",
        "warp",
        STRAIGHT_MIXED,
        text=True,
        warp_columns=14,
        folder="old.k4f",
        corrected=True,
    ),
    Case("warp text of 18", ".k4w", "warp", TETRA, text=True, warp_columns=18, folder="old.k4f", corrected=True),
)

CASES = tuple(_codes()) + tuple(_meshes()) + SPECIAL


def random_case(seed):
    """A case drawn from everything that the table varies, reproducible by its seed."""
    random = np.random.default_rng(seed)

    def draw(*choices):
        return choices[int(random.integers(len(choices)))]

    labels = draw(True, False)
    block = Block(
        kind=draw("hexa", "wedge", "tetra", "pyramid", "mixed"),
        bricks=tuple(int(random.integers(2, top)) for top in (7, 5, 5)),
        size=(7.0, 5.0, float(random.uniform(0.8, 4.0))),
        bend=draw(0.0, 0.0, 0.1, 0.4),
        runner=draw(True, False),
        labels=labels,
        pieces=draw(1, 1, 2) if labels else 1,
        single_precision=draw(False, False, True),
        tolerance=draw(None, None, None, float(random.uniform(0.1, 3.0))),
        tilted=draw(True, False, False),
        shape=draw("full", "full", "step", "hole", "corners"),
        seed=seed,
    )
    stage, reader = draw((".k4f", "flow"), (".k4f", "flow"), (".k4p", "flow"), (".k4c", "cool"), (".k4w", "warp"))
    folder = draw("", "", "", "old.k4f", "old.k4p", "old.k4w") if reader == "cool" else ""
    times = int(random.integers(0, 4))
    return Case(
        f"random {seed}",
        stage,
        reader,
        block,
        code=int(random.integers(1, 10)),
        times=times,
        log=draw(COMPLETE, COMPLETE, OPEN, None),
        material=draw("pvt", "dense", "flake", "thermoset"),
        corrected=draw(True, False),
        text=draw(False, False, True) and not folder,
        header_code=draw(1007, 1012),
        warp_columns=draw(14, 17, 26, 29),
        gas_item=draw(True, False),
        cooling_item=tuple(k for k in range(times + 1) if random.random() < 0.4),
        id_map=draw(True, False) and not folder,
        warp_items=folder == "old.k4w",
        fibre=draw(True, False),
        shrinkage=draw(17.0, 3.0, 0.5),
        shrinkage_power=draw(1, 1, 3),
        stray_shrinkage=draw(0.0, 0.0, 2.5),
        shorter=draw(True, False, False),
        folder=folder,
        missing=tuple(k for k in range(times) if random.random() < 0.15),
        single_thread=folder == "old.k4w",
        seed=seed,
    )
