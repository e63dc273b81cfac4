"""Stage result files, binary and in the older text layouts."""

import h5py
import numpy as np

UNITS = {"temperature": "oC", "velocity": "cm/s", "time": "s", "length": "mm"}


def write_binary(path, items, max_node, max_element=0, data_type=1, node_ids=None, seconds=1.0):
    """`items`: number -> values (0-based, dense by label, or by entry when `node_ids` is given)."""
    with h5py.File(path, "w") as file:
        file.attrs["format"] = "qnl-result"
        for name, value in (
            ("format_version", 1),
            ("result_version", 1),
            ("max_node", max_node),
            ("max_element", max_element),
        ):
            file.attrs[name] = np.int32(value)
        head = file.create_group("head").attrs
        for name in ("code", "stamp", "flag"):
            head[name] = np.int32(0)
        head["item_count"] = np.int32(len(items))
        for name in ("mesh", "material", "project"):
            head[name] = ""
        producer = file.create_group("producer").attrs
        producer["program"] = "test"
        for name in ("major", "minor", "patch"):
            producer[name] = np.int32(0)
        time = file.create_group("time").attrs
        time["index"], time["value"], time["unit"] = np.int32(0), np.float32(seconds), "s"
        group = file.create_group("items")
        for number, values in items.items():
            data = group.create_dataset(str(number), data=np.asarray(values, np.float32))
            data.attrs["name"], data.attrs["unit"] = f"Item_{number}", "--"
            data.attrs["data_type"] = np.int32(data_type)
            data.attrs["max"], data.attrs["min"] = np.float32(data[()].max()), np.float32(data[()].min())
        if node_ids is not None:
            file["node_ids"] = np.asarray(node_ids, np.int32)


def _save(path, lines):
    with open(path, "w", newline="\n") as file:
        file.write("\n".join(lines) + "\n")


def write_flow_text(path, labels, columns, header_code, gas=None):
    """`columns`: (n, 14) numbers of each record."""
    lines = ["1", "[HEADER]", f"{header_code}  1.5", "mesh", "material", "project", "0", f"{len(labels)} 0 0"]
    lines += ["[TIME STEPS]", "2 ", "0.5 1.0", "1.5", "[RESULTS EOF]"]
    for row, label in enumerate(labels):
        numbers = [repr(float(v)) for v in columns[row]]
        if gas is not None:
            numbers.append(repr(float(gas[row])))
        lines.append(f"{label} " + " ".join(numbers))
    _save(path, lines + ["[EOF]"])


def write_cool_text(path, labels, columns):
    """`columns`: (n, 3) numbers of each record."""
    lines = ["1", "[HEADER]", "1003  2.5", "mesh", "material", "project", "0", f"{len(labels)} 0"]
    lines += ["[TIME STEPS]", "1 ", "3.25", "[PART VOLUME DATA]", "a", "b", "c"]
    lines += [f"{label} " + " ".join(repr(float(v)) for v in row) for label, row in zip(labels, columns)]
    _save(path, lines + ["[EOF]"])


def write_warp_text(path, labels, columns):
    """`columns`: (n, 14, 17, 26 or 29) numbers of each record."""
    lines = ["1", "[HEADER]", "1007  9104", "mesh", "material", ".pro", "0"]
    lines += [f"{len(labels)} 0 0", f"{columns.shape[1]} 7", "0 0 0 0 1 1 1", "[RESULTS EOW]"]
    lines += [f"{label} " + " ".join(repr(float(v)) for v in row) for label, row in zip(labels, columns)]
    _save(path, lines + ["[EOF]"])
