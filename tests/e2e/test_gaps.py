"""Stage results that lack what the evaluation needs: told, and never an exit of 0."""
import unittest

import numpy

from small_project import SmallProject, flow_items, run, write_result


class GapsTest(unittest.TestCase):
    def setUp(self):
        self.project = SmallProject(self)

    def check(self, name, *texts, mode="--corrected"):
        """The run and, where the gap is one of the file alone, `info` tell it."""
        result = run("run", self.project.file(name), mode, "--intermediate-times", 0)
        self.assertEqual(result.returncode, 1, result.stderr)
        for text in texts:
            self.assertIn(text, result.stderr)
        return result

    def without(self, name, items, *left_out):
        write_result(self.project.file(name), {id: item for id, item in items.items() if id not in left_out}, 3.0)

    def test_whole_results_have_no_gaps(self):
        for name in ("box1.k4f", "box1.k4c", "box1.k4w"):
            result = run("run", self.project.file(name), "--corrected", "--intermediate-times", 0)
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertEqual(run("info", self.project.file(name)).returncode, 0)

    def test_flow_without_temperature(self):
        self.without("box1.k4f", flow_items(self.project.temperature), 6)
        told = ("box1.k4f: item 6, Temperature: it is not there", "only 11, 12, 13, 14, 17", "export the result again")
        for mode in ("--corrected", "--classic", "--resolved"):
            self.check("box1.k4f", *told, mode=mode)
        told_by_info = run("info", self.project.file("box1.k4f"))
        self.assertEqual(told_by_info.returncode, 1)
        self.assertIn(told[0], told_by_info.stderr)

    def test_flow_may_lack_what_is_not_needed(self):
        self.without("box1.k4f", flow_items(self.project.temperature), 11, 12, 13)
        result = run("run", self.project.file("box1.k4f"), "--corrected", "--intermediate-times", 0)
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_items_of_another_stage(self):
        self.without("box1.k4c", flow_items(self.project.temperature))
        self.check("box1.k4c", "box1.k4c: item 1, Temperature: it is not there", "only 6, 11, 12, 13, 14, 17")

    def test_warp(self):
        zero = numpy.zeros(len(self.project.points))
        self.without("box1.k4w", {3: ("Displacement_z", "mm", zero)})
        self.check("box1.k4w", *(f"item {item}, " for item in (1, 2, 7)))

    def test_fewer_nodes_than_the_mesh(self):
        """The last nine of 175 nodes have no entry."""
        write_result(self.project.file("box1.k4f"), flow_items(self.project.temperature[:-9]), 3.0)
        self.check("box1.k4f", "box1.k4f: node entries: one for each node of the part expected, none for 9 nodes")

    def test_fewer_rows_than_nodes(self):
        """Cool results name their nodes."""
        count = len(self.project.points) - 9
        temperature = self.project.temperature[:count]
        write_result(
            self.project.file("box1.k4c"),
            {1: ("Temperature", "oC", temperature), 2: ("CoolingTime", "s", temperature / 10.0)},
            3.0,
            node_ids=numpy.arange(1, count + 1),
        )
        self.check("box1.k4c", "none for 9 nodes")


if __name__ == "__main__":
    unittest.main()
