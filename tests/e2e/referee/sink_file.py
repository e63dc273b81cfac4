"""The text file of the sink-mark displacement, in the layout of a warp result."""

import numpy as np

NODE_VARIABLES = (
    "XDisplacement    mm",
    "YDisplacement    mm",
    "ZDisplacement    mm",
    "XTDisplacement   mm",
    "YTDisplacement   mm",
    "ZTDisplacement   mm",
    "VolmShrinkage   '%'",
    "Flatness        mm",
    "XMDisplacement   mm",
    "YMDisplacement   mm",
    "ZMDisplacement   mm",
    "XMBDisplacement  mm",
    "YMBDisplacement  mm",
    "ZMBDisplacement  mm",
    "XFRSDisplacement  mm",
    "YFRSDisplacement  mm",
    "ZFRSDisplacement  mm",
)
CELL_VARIABLES = (
    "XXThermalStress       MPa",
    "YYThermalStress       MPa",
    "ZZThermalStress       MPa",
    "XYThermalStress       MPa",
    "YZThermalStress       MPa",
    "ZXThermalStress       MPa",
    "VonMisesThermlStress  MPa",
)


def sink_file_lines(run, vectors):
    """Lines of the file for the (3, n + 1) sink-mark vectors; a negative zero is given as 0."""
    mesh, words = run.mesh, run.words
    rows = max(mesh.node_count, int(mesh.labels.max())) if mesh.uses_labels else mesh.node_count
    head = ["1", "[HEADER]", "1007  9104"]
    head += [words.shown_path("Mesh", run.mesh_name), words.shown_path("Material", run.material_name)]
    head += [".pro", "0", f"{rows} {mesh.cell_count} 0", "17 7", "0 0 0 0 1 1 1", "04/02/10  17:41:28 "]
    head += ["[FIX NODE]", "0", "-1", "[VARBLE INFO]", *NODE_VARIABLES, "", "[RESULTS EOW]"]
    body = [_node_row(mesh, vectors, label) for label in range(1, rows + 1)]
    cells = [f"{c} 0 0 0 0 0 0 0" for c in range(1, mesh.cell_count + 1)]
    tail = ["[PART INSERT ELEM RESULTS]", "[EOF]"]
    return head + body + ["[ELEM VARBLE INFO]", *CELL_VARIABLES, "[PART ELEM RESULTS]"] + cells + tail


def _node_row(mesh, vectors, label):
    node = mesh.local_of[label] if label < len(mesh.local_of) else 0
    vector = vectors[:, node] if node > 0 and mesh.node_class[node] == 1 else np.zeros(3)
    return " ".join([str(label)] + ["%g" % (v + 0.0) for v in vector] + ["0"] * 14)


def compare_sink_file(run, vectors, path):
    with open(path, newline="") as file:
        written = file.read().split("\n")
    wanted = sink_file_lines(run, vectors) + [""]
    if len(wanted) != len(written):
        return [f"{path}: {len(wanted)} lines expected, {len(written)} written"]
    for number, (a, b) in enumerate(zip(wanted, written), 1):
        if a != b:
            return [f"{path}, line {number}: expected {a!r}, written {b!r}"]
    return []
