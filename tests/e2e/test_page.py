"""The results page: its committed bundle is what the sources give, and it works in a headless Chromium.

The log of the run stands in page.log of the build folder. Without a browser or Node.js the tests are skipped, unless
QNL_BROWSER is "required"."""
import os
import pathlib
import shutil
import subprocess
import unittest

VIEWER = pathlib.Path(__file__).resolve().parents[2] / "viewer"
LOG = pathlib.Path(os.environ["QNL_BUILD"]) / "page.log"
REMEDY = "tools/install_packages.sh page"


def missing_programs():
    browsers = (os.environ.get("CHROMIUM"), "chromium", "chromium-browser")
    found = {
        "Chromium": any(name and shutil.which(name) for name in browsers),
        "node": shutil.which("node"),
        "npm": shutil.which("npm"),
    }
    return [name for name, path in found.items() if not path]


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        LOG.unlink(missing_ok=True)
        missing = missing_programs()
        if missing:
            lacking = f"no {', '.join(missing)}; {REMEDY}"
            if os.environ.get("QNL_BROWSER") == "required":
                raise AssertionError(lacking)
            message = f"the page is not tested: {lacking}"
            print(message)  # ctest knows the skipped test by it
            raise unittest.SkipTest(message)
        cls.npm("ci", "--no-audit", "--no-fund", "--loglevel=error")

    @staticmethod
    def npm(*words):
        """Runs npm and adds what it says to the log; a failure shows the log."""
        with LOG.open("a", encoding="utf-8") as log:
            print(f"== npm {' '.join(words)}", file=log, flush=True)
            done = subprocess.run(
                ["npm", *words], cwd=VIEWER, stdout=log, stderr=subprocess.STDOUT, timeout=600, check=False
            )
        if done.returncode != 0:
            raise AssertionError(LOG.read_text(encoding="utf-8"))

    def test_bundle_is_what_the_sources_give(self):
        self.npm("run", "check")

    def test_page_in_browser(self):
        self.npm("test")


if __name__ == "__main__":
    unittest.main()
