#!/usr/bin/env python3
"""Result files checked by h5py: what the writer stores, and what the reader makes of files by h5py."""

import os
import subprocess
import sys
import tempfile
import unittest

import h5py
import numpy as np

TOOL = ""


def run(*words):
    return subprocess.run([TOOL, *words], check=True, capture_output=True, text=True).stdout


class Folder(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def path(self, name):
        return os.path.join(self.folder.name, name)


class Writer(Folder):
    def check_attributes(self, thing, expected):
        self.assertEqual(sorted(thing.attrs), sorted(expected))
        for name, (kind, value) in expected.items():
            stored = thing.attrs.get_id(name)
            self.assertEqual(stored.shape, (), name)
            if kind is str:
                self.assertEqual(h5py.check_string_dtype(stored.dtype).encoding, "utf-8", name)
            else:
                self.assertEqual(stored.dtype, np.dtype(kind), name)
            self.assertEqual(thing.attrs[name], value, name)

    def test_layout(self):
        run("write", self.path("a.frz"))
        with h5py.File(self.path("a.frz"), "r") as file:
            self.assertEqual(sorted(file), ["head", "items", "node_ids", "producer", "time"])
            self.check_attributes(
                file,
                {
                    "format": (str, "qnl-result"),
                    "format_version": ("<i4", 1),
                    "result_version": ("<i4", 1),
                    "max_node": ("<i4", 3),
                    "max_element": ("<i4", 0),
                },
            )
            self.check_attributes(
                file["head"],
                {
                    "code": ("<i4", 1004),
                    "stamp": ("<i4", 802218888),
                    "mesh": (str, "Mesh\\a.hdf"),
                    "material": (str, "Material\\b.toml"),
                    "project": (str, ".pro"),
                    "flag": ("<i4", 0),
                    "item_count": ("<i4", 2),
                },
            )
            self.check_attributes(
                file["producer"],
                {
                    "program": (str, "QNL3DFrozenLayer"),
                    "major": ("<i4", 1000),
                    "minor": ("<i4", 1001),
                    "patch": ("<i4", 1002),
                },
            )
            self.check_attributes(
                file["time"], {"index": ("<i4", 0), "value": ("<f4", np.float32(0.01)), "unit": (str, "--")}
            )
            self.assertEqual(file["node_ids"].dtype, np.dtype("<i4"))
            self.assertEqual(list(file["node_ids"]), [10, 20, 5])
            self.assertEqual(sorted(file["items"]), ["1", "12"])
            self.check_attributes(
                file["items/12"],
                {
                    "name": (str, "SinkMarkDisplacement_Totoal"),
                    "unit": (str, "mm"),
                    "data_type": ("<i4", 1),
                    "max": ("<f4", 1000.5),
                    "min": ("<f4", -5.0),
                },
            )
            for item, values in (("1", [0.25, 0.1, 0.75]), ("12", [5.0, 0.0, -5.0])):
                data = file["items"][item]
                self.assertEqual(data.dtype, np.dtype("<f4"))
                self.assertIsNone(data.chunks)
                np.testing.assert_array_equal(data[:], np.array(values, np.float32))

    def test_same_bytes(self):
        contents = set()
        for name in ("a.frz", "b.frz", "a.frz"):
            run("write", self.path(name))
            with open(self.path(name), "rb") as file:
                contents.add(file.read())
        self.assertEqual(len(contents), 1)


class Reader(Folder):
    def write(self, text, integer, real, **storage):
        """A file with two dense node items and one element item, in the given types."""
        path = self.path("stage.k4f")
        with h5py.File(path, "w") as file:

            def put(thing, **values):
                for name, value in values.items():
                    if isinstance(value, str):
                        thing.attrs.create(name, text(value))
                    else:
                        thing.attrs.create(name, value, dtype=integer if isinstance(value, int) else real)

            put(file, format="qnl-result", format_version=1, result_version=7, max_node=4, max_element=2)
            put(
                file.create_group("head"),
                code=1007,
                stamp=5,
                mesh="m.hdf",
                material="Stahl°.toml",
                project="p",
                flag=1,
                item_count=3,
            )
            put(file.create_group("producer"), program="h5py", major=1, minor=2, patch=3)
            put(file.create_group("time"), index=2, value=0.5, unit="s")
            for item, name, unit, kind, values in (
                (6, "Temperature", "°C", 1, [20, 230, 90.5, -1]),
                (14, "Shrinkage", "%", 1, [1, 2, 3, 4]),
                (9, "Axy", "", 2, [0.25, -0.5]),
            ):
                data = file.create_dataset(f"items/{item}", data=np.array(values), dtype=real, **storage)
                put(data, name=name, unit=unit, data_type=kind, max=5.0, min=1.0)
        return path

    EXPECTED = (
        "status 0\nversion 7\nhead 1007 5 m.hdf Stahl°.toml p 1 3\nentries 4 2\n"
        "item 6 Temperature [°C] type 1\nvalues 6: 20 230 90.5 -1\n"
        "item 9 Axy [] type 2\nvalues 9: 0.25 -0.5\n"
        "item 14 Shrinkage [%] type 1\nvalues 14: 1 2 3 4\n"
    )

    def test_types(self):
        def variable(text):
            return text

        def fixed(text):
            return np.bytes_(text.encode() + b"\0" * 5)

        for text in (variable, fixed):
            for integer, real in (("<i4", "<f4"), (">i8", ">f8"), ("<u8", "<f8"), (">i2", ">f4"), ("<u2", "<f2")):
                with self.subTest(text=text.__name__, integer=integer, real=real):
                    self.assertEqual(run("read", self.write(text, integer, real)), self.EXPECTED)

    def test_storage(self):
        for storage in ({"chunks": (2,)}, {"compression": "gzip", "shuffle": True}, {"maxshape": (None,)}):
            with self.subTest(**storage):
                self.assertEqual(run("read", self.write(str, "<i4", "<f4", **storage)), self.EXPECTED)

    def test_labels(self):
        for kind in ("<i4", ">i8", "u2"):
            path = self.write(str, "<i4", "<f4")
            with h5py.File(path, "a") as file:
                file["node_ids"] = np.array([9, 2, 40, 1], dtype=kind)
            self.assertIn("labels 0: 9 2 40 1\n", run("read", path))

    def test_single_precision_overflow(self):
        path = self.write(str, "<i4", "<f8")
        with h5py.File(path, "a") as file:
            file["items/14"][1] = 1e300
        text = run("read", path)
        self.assertNotIn("values 14", text)
        self.assertIn("fault /items/14: ", text)
        self.assertIn("values 6: 20 230 90.5 -1\n", text)


if __name__ == "__main__":
    TOOL = sys.argv.pop(1)
    unittest.main()
