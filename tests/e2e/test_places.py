"""Places that cannot be written, or that have too little room: told in one sentence before the work begins."""
import os
import subprocess
import unittest

import foreign_files as foreign
from foreign_files import READERS_ARE_BUILT_IN
from small_project import Folder, SmallProject, run

NOBODY = 65534
SMALL_DISK = 400_000


def outcome(test, *words, **options):
    """One sentence of a refusal."""
    result = run(*words, **options)
    test.assertEqual((result.returncode, result.stdout), (1, ""), result.stderr)
    test.assertRegex(result.stderr, r"\Afrozenlayer: [^\n]*\n\Z")
    return result.stderr


@unittest.skipUnless(os.name == "posix", "rights of another kind")
class RightsTest(unittest.TestCase):
    """As somebody for whom a folder is closed."""

    def setUp(self):
        self.project = SmallProject(self)
        done = run("run", self.project.root, "--classic")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.closed = self.project.root.parent / "closed"
        self.closed.mkdir()
        for place in (self.project.root.parent, self.closed):
            place.chmod(0o755)
        self.somebody = {"user": NOBODY, "cwd": "/"} if os.geteuid() == 0 else {}
        if not self.somebody:
            self.closed.chmod(0o555)

    def check(self, folder, *words):
        told = outcome(self, *words, **self.somebody)
        self.assertIn(f"{folder} cannot be written (Permission denied)", told)
        self.assertIn("name another place", told)

    def test_export_and_view(self):
        self.check(self.closed, "export", self.project.root, "--out", self.closed / "out")
        self.check(self.closed, "view", self.project.root, "--out", self.closed / "page.html")
        self.project.file("").chmod(0o777)
        self.check(self.closed, "run", self.project.root, "--view", self.closed / "page.html")
        self.check(self.closed, "run", self.project.root, "--export", self.closed / "out")
        self.assertEqual(list(self.closed.iterdir()), [])

    def test_run(self):
        run_folder = self.project.file("").resolve()
        before = {path.name: path.stat().st_mtime_ns for path in run_folder.iterdir()}
        run_folder.chmod(0o555)
        self.check(run_folder, "run", self.project.root, "--classic")
        run_folder.chmod(0o777)
        self.assertEqual(before, {path.name: path.stat().st_mtime_ns for path in run_folder.iterdir()})
        mesh_folder = (self.project.root / "Mesh").resolve()
        for search in mesh_folder.glob("*.sur"):
            search.unlink()
        mesh_folder.chmod(0o555)
        self.check(mesh_folder, "run", self.project.root, "--classic")
        mesh_folder.chmod(0o777)

    @unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
    def test_import_and_show(self):
        points, hexas = foreign.box()
        box = self.project.root.parent / "box.vtu"
        foreign.write_vtu(box, points, hexas, {"temperature": points[:, 2]}, seconds=1.0)
        words = (box, "--freeze-temperature", 1)
        self.check(self.closed, "import", *words, "--out", self.closed / "deep/box")
        self.check(self.closed, "show", *words, "--out", self.closed / "page.html")


class RoomTest(unittest.TestCase):
    """On a disk of its own, which only an administrator can make."""

    def setUp(self):
        self.disk = Folder(self).path / "disk"
        self.disk.mkdir()
        made = subprocess.run(
            ["mount", "-t", "tmpfs", "-o", f"size={SMALL_DISK}", "tmpfs", self.disk], capture_output=True, check=False
        )
        if made.returncode != 0:
            self.skipTest("no disk can be made")
        self.addCleanup(subprocess.run, ["umount", self.disk], check=True)
        self.project = SmallProject(self, cells=(24, 20, 2))

    def leave(self, room):
        """Fills the disk but for so many bytes."""
        (self.disk / "filler").unlink(missing_ok=True)
        space = os.statvfs(self.disk)
        (self.disk / "filler").write_bytes(bytes(space.f_bavail * space.f_frsize - room))

    def check(self, *words):
        before = sorted(self.disk.rglob("*"))
        told = outcome(self, *words)
        self.assertRegex(
            told, rf"{self.disk}[^:]*: at least [\d.]+ [kM]B are needed and [\d.]+ kB are free; free space"
        )
        self.assertEqual(sorted(self.disk.rglob("*")), before)

    def test_export_and_view(self):
        done = run("run", self.project.root, "--classic")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.check("view", self.project.root, "--out", self.disk / "page.html")
        self.leave(200_000)
        self.check("export", self.project.root, "--out", self.disk / "out")
        self.check("export", self.project.root, "--out", self.disk / "out.hdf")
        self.leave(50_000)
        self.check("export", self.project.root, "--out", self.disk / "out.csv")

    def test_run(self):
        root = self.disk / "part"
        subprocess.run(["cp", "-r", self.project.root, root], check=True)
        self.leave(20_000)
        self.check("run", root, "--classic")

    @unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
    def test_import(self):
        points, hexas = foreign.box(cells=(24, 20, 2))
        box = self.project.root / "box.vtu"
        foreign.write_vtu(box, points, hexas, {"temperature": points[:, 2]}, seconds=1.0)
        self.leave(4096)
        self.check("import", box, "--freeze-temperature", 1, "--out", self.disk / "box")


if __name__ == "__main__":
    unittest.main()
