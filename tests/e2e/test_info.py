"""frozenlayer info: what each kind of file holds, for people and for machines."""
import json
import struct
import unittest

import h5py
import numpy

from small_project import EXAMPLES, SmallProject, run


def facts(path):
    result = run("info", path, "--json")
    return json.loads(result.stdout)


class InfoTest(unittest.TestCase):
    def check_fails(self, path, text):
        result = run("info", path)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout, "")
        self.assertIn(text, result.stderr)

    def test_mesh(self):
        found = facts(EXAMPLES / "ribbed-cover/Mesh/cover.hdf")
        self.assertEqual(found["kind"], "mesh")
        expected = {
            "nodes": 31137,
            "cells": 118119,
            "tetra": 118119,
            "part_cells": 114911,
            "runner_cells": 3208,
            "smallest_label": 1,
            "largest_label": 31137,
            "has_labels": True,
        }
        self.assertEqual({key: found[key] for key in expected}, expected)
        self.assertAlmostEqual(found["depth_window_mm"], 3.0 * found["geometric_tolerance_mm"])
        self.assertEqual([(axis["min_mm"], axis["max_mm"]) for axis in found["box"]][0], (-16.0, 60.0))

    def test_modulus_of_a_box(self):
        project = SmallProject(self, size=(12.0, 8.0, 2.0))
        found = facts(project.root / "Mesh/box.hdf")
        self.assertAlmostEqual(found["geometric_tolerance_mm"], 12.0 * 8.0 * 2.0 / (2 * (96.0 + 24.0 + 16.0)))
        self.assertEqual((found["hexa"], found["boundary_faces"], found["has_labels"]), (96, 128, False))

    def test_mixed_cells_are_told_apart(self):
        found = facts(EXAMPLES / "stepped-plate/Mesh/plate.hdf")
        self.assertEqual((found["wedge"], found["hexa"], found["cells"]), (9136, 11232, 20368))

    def test_stage_result(self):
        path = EXAMPLES / "ribbed-cover/Analysis/Run1/cover1_003.k4f"
        found = facts(path)
        self.assertEqual((found["kind"], found["time_s"], found["time_index"]), ("result", 1.0, 3))
        self.assertFalse(found["has_node_ids"])
        with h5py.File(path) as file:
            self.assertEqual([item["id"] for item in found["items"]], sorted(map(int, file["items"])))
            for item in found["items"]:
                values = file[f"items/{item['id']}"][()].astype("f8")
                self.assertEqual((item["min"], item["max"], item["values"]), (values.min(), values.max(), len(values)))
                self.assertAlmostEqual(item["mean"], values.mean(), delta=1e-9 * numpy.abs(values).max())

    def test_own_result_carries_names_for_people(self):
        project = SmallProject(self)
        run("run", project.root, "--intermediate-times", 0, cwd=project.root.parent)
        found = facts(project.file("box1.fzr"))
        self.assertEqual(
            (found["mode"], found["program"], found["has_node_ids"]), ("resolved", "QNL3DFrozenLayer", True)
        )
        self.assertEqual(found["mesh"], str(project.root / "Mesh/box.hdf"))
        first = found["items"][0]
        self.assertEqual((first["name"], first["meaning"], first["unit"]), ("Frozen_Ratio", "Frozen ratio", "%"))
        text = run("info", project.file("box1.fzr")).stdout
        self.assertIn("Frozen_Ratio", text)
        self.assertIn("°C", text)

    def test_search_file(self):
        project = SmallProject(self)
        run("run", project.root, "--intermediate-times", 0)
        path = project.root / "Mesh/box.sur"
        words = struct.unpack(f"<{path.stat().st_size // 4}i", path.read_bytes())
        found = facts(path)
        self.assertEqual(found["kind"], "search file")
        self.assertEqual(found["surface_nodes"], words[1])
        self.assertEqual(found["pass_elements"], len(words) - 2 - words[1])
        path.write_bytes(path.read_bytes()[:-4])
        self.check_fails(path, "is damaged")

    def test_material(self):
        found = facts(EXAMPLES / "ribbed-cover/Material/pp.toml")
        self.assertEqual(
            (found["kind"], found["material"], found["freeze_temperature_degc"]), ("material", "thermoplastic", 130.0)
        )
        self.assertTrue(0.78 < found["density_freeze_g_cm3"] < found["density_25_degc_g_cm3"] < 0.91)

    def test_project_folder_and_run_file(self):
        project = SmallProject(self)
        found = facts(project.root)
        self.assertEqual((found["kind"], found["name"]), ("project folder", "box"))
        self.assertEqual(
            [(stage["stage"], stage["intermediate_times"], stage["evaluated"]) for stage in found["stages"]],
            [("flow", 2, False), ("cool", 0, False), ("warp", 0, False)],
        )
        self.assertTrue(found["runs"][0]["marker_log_complete"])
        self.assertEqual(found["runs"][0]["mesh"], str(project.root / "Mesh/box.hdf"))
        (project.root / "Mesh/box.hdf").unlink()
        self.assertTrue(facts(project.root)["runs"][0]["mesh"].endswith(" (missing)"))
        self.assertEqual(facts(project.file("box1.run"))["material"], str(project.root / "Material/pp.toml"))

    def test_a_marker_log_is_complete_when_the_run_says_so(self):
        """A mark that lies across the 254th byte of a line is none."""
        project = SmallProject(self)
        log = project.file("QNLIntermediateOutputTime.log")
        for text, complete in (
            ("x" * 252 + "[EOF]\n", False),
            ("x" * 254 + "[EOF]\n", True),
            ("[EO\nF]\n", False),
            ("a [EOF] b", True),
        ):
            log.write_text(text)
            self.assertEqual(facts(project.root)["runs"][0]["marker_log_complete"], complete, text)
            run("run", project.root, "--intermediate-times", "0")
            with h5py.File(project.file("box1.fzr")) as file:
                self.assertEqual("11" in file["items"], complete, "runs that smooth their normals write item 11")

    def test_values_that_are_not_finite_are_counted_and_told(self):
        project = SmallProject(self)
        with h5py.File(project.file("box1.k4f"), "a") as file:
            file["items/6"][3] = numpy.inf
        result = run("info", project.file("box1.k4f"), "--json")
        self.assertEqual(result.returncode, 1)
        found = json.loads(result.stdout)
        self.assertEqual(found["items"][0]["not_finite"], 1)
        self.assertEqual(len(found["faults"]), 1)
        self.assertIn("item 6", result.stderr)

    def test_what_cannot_be_told(self):
        project = SmallProject(self)
        self.check_fails(project.root / "none.hdf", "none.hdf is missing")
        self.check_fails(project.root / "Mesh", "no stage result is found")
        other = project.root / "notes.txt"
        other.write_text("hello\n")
        self.check_fails(other, "neither a mesh")
        mesh = project.root / "Mesh/box.hdf"
        mesh.write_bytes(mesh.read_bytes()[:3000])
        self.check_fails(mesh, "box.hdf")
        result = project.file("box1.k4f")
        with h5py.File(result, "a") as file:
            file.attrs["format_version"] = 99
        self.check_fails(result, "box1.k4f")
        material = project.root / "Material/pp.toml"
        material.write_text('kind = "thermoplastic"\ndensity = 1.0\n')
        self.check_fails(material, "pp.toml")


if __name__ == "__main__":
    unittest.main()
