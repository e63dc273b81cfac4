"""Result files: one HDF5 file per stage and time."""

from dataclasses import dataclass

import h5py
import numpy as np


@dataclass
class ResultFile:
    max_node: int
    max_element: int
    node_ids: np.ndarray | None
    items: dict
    attributes: dict  # per item id
    head: dict
    time: dict
    producer: dict
    root: dict

    def item(self, number):
        """1-based float32 values, or None when the item is absent or has the wrong length."""
        if number not in self.items:
            return None
        values = self.items[number]
        wanted = self.max_element if self.attributes[number]["data_type"] == 2 else self.max_node
        return values if len(values) == wanted + 1 else None


def one_based(values):
    return np.concatenate((np.zeros(1, values.dtype), values))


def read_result(path):
    """The file's content; None when it cannot be opened as HDF5."""
    try:
        file = h5py.File(path, "r")
    except OSError:
        return None
    with file:
        ids = one_based(file["node_ids"][()]) if "node_ids" in file else None
        items = {int(k): one_based(v[()]) for k, v in file["items"].items()}
        attributes = {int(k): dict(v.attrs) for k, v in file["items"].items()}
        groups = {k: dict(file[k].attrs) if k in file else {} for k in ("head", "time", "producer")}
        root = dict(file.attrs)
    return ResultFile(
        max_node=int(root["max_node"]),
        max_element=int(root["max_element"]),
        node_ids=ids,
        items=items,
        attributes=attributes,
        root=root,
        **groups,
    )
