"""Units and dimensions of what frozenlayer import reads: velocities, densities, and what OpenFOAM tells of fields."""
import gzip
import unittest

import numpy

import foreign_files as foreign
from foreign_files import READERS_ARE_BUILT_IN
from small_project import EXAMPLES
from test_import import ImportCase, items


def foam_values(values):
    rows = [repr(v) if values.ndim == 1 else f"({' '.join(map(repr, v))})" for v in values.tolist()]
    return f"{len(rows)}\n(\n" + "\n".join(rows) + "\n)"


@unittest.skipUnless(READERS_ARE_BUILT_IN, "built without VTK")
class UnitTest(ImportCase):
    def read(self, item):
        return items(self.run_folder / "box1.k4f")[item]

    def test_velocities(self):
        """1 of its unit a second is 100, 1 and 0.1 cm/s; without the option it is the length unit a second."""
        path = self.vtu(point_data={"T": self.temperature, "U": numpy.full((len(self.points), 3), 2.0)})
        for words, factor in (
            (("--velocity-unit", "m/s"), 100.0),
            (("--velocity-unit", "metres-per-second"), 100.0),
            (("--velocity-unit", "cm/s"), 1.0),
            (("--velocity-unit", "mm/s", "--length-unit", "cm"), 0.1),
            (("--length-unit", "cm"), 1.0),
            ((), 0.1),
        ):
            with self.subTest(words=words):
                self.bring_in(path, *words, "--force")
                for item in (11, 12, 13):
                    numpy.testing.assert_allclose(self.read(item), 2.0 * factor, rtol=1e-6)
        self.out = self.folder / "refused"
        self.check_refused([path, "--velocity-unit", "km/h"], "--velocity-unit", "km/h")

    def test_density_is_taken_when_it_is_named(self):
        law = ("--material", EXAMPLES / "stepped-plate/Material/pp.toml")
        density = 900.0 + 10.0 * self.depth
        path = self.vtu(point_data={"T": self.temperature, "rho": density})
        left = self.bring_in(path, material=law)
        self.assertIn(
            'Warning: "rho" is left out, as the density follows from the material: --density rho', left.stderr
        )
        self.assertIn("density: computed: Tait law", left.stdout)
        computed = self.read(17)
        for unit in ("kg/m3", "kg/m³"):
            taken = self.bring_in(path, "--density", "rho", "--density-unit", unit, "--force", material=law)
            self.assertNotIn("rho", taken.stderr)
            numpy.testing.assert_allclose(self.read(17), density / 1000.0, rtol=1e-6)
        self.assertGreater(numpy.abs(computed - self.read(17)).max(), 1e-3)
        doubtful = self.bring_in(path, "--density", "rho", "--force", material=law)
        self.assertIn("add --density-unit kg/m3", doubtful.stderr)
        path = self.vtu(point_data={"T": self.temperature, "rho": density / 1000.0})
        doubtful = self.bring_in(path, "--density", "rho", "--density-unit", "kg/m3", "--force", material=law)
        self.assertIn("add --density-unit g/cm3", doubtful.stderr)

    def foam_case(self, **fields):
        """One time of a case with T in K and these further fields: (dimensions, values of the cells)."""
        case = foreign.write_openfoam(
            self.folder / "foam", self.points / 1000.0, self.hexas, [1], [numpy.full(len(self.hexas), 400.0)]
        )
        for name, (dimensions, values) in fields.items():
            kind = "scalar" if values.ndim == 1 else "vector"
            foreign.foam_file(
                case.parent / "1" / name,
                f"vol{kind.title()}Field",
                f"// dimensions [9 9 9 9 9 9 9];\ndimensions {dimensions};\n"
                f"internalField nonuniform List<{kind}>\n{foam_values(values)};\n"
                "boundaryField { walls { type zeroGradient; } }\n",
            )
        return case

    def test_openfoam_is_in_si(self):
        """Metres a second, pascal and kilograms a cubic metre without an option."""
        cells = len(self.hexas)
        case = self.foam_case(
            U=("[0 1 -1 0 0 0 0]", numpy.full((cells, 3), 0.02)),
            p=("[1 -1 -2 0 0 0 0]", numpy.full(cells, 2e7)),
            rho=("[1 -3 0 0 0]", numpy.full(cells, 950.0)),
        )
        words = (case, "--density", "rho", "--pressure-array", "p")
        told = self.bring_in(*words, material=("--material", EXAMPLES / "stepped-plate/Material/pp.toml"))
        numpy.testing.assert_allclose(self.read(11), 2.0, rtol=1e-6)
        numpy.testing.assert_allclose(self.read(17), 0.95, rtol=1e-6)
        self.assertRegex(told.stdout, r"pressure +p +cells and boundary +--pressure-array +20 +20 +MPa")
        self.bring_in(*words, "--velocity-unit", "mm/s", "--force")
        numpy.testing.assert_allclose(self.read(11), 0.002, rtol=1e-6)

    def test_openfoam_fields_of_other_dimensions(self):
        cells = len(self.hexas)
        case = self.foam_case(
            U=("[0 1 0 0 0 0 0]", numpy.full((cells, 3), 0.02)), p=("[0 2 -2 0 0 0 0]", numpy.full(cells, 20.0))
        )
        told = self.bring_in(case)
        self.assertRegex(told.stderr, r'Warning: "U" is left out: .*dimensions \[0 1 0 0 0 0 0\].*--velocity')
        numpy.testing.assert_array_equal(self.read(11), 0.0)
        self.out = self.folder / "refused"
        self.check_refused([case, "--velocity", "U"], '"U" has the dimensions [0 1 0 0 0 0 0]', "those of m/s")
        self.check_refused([case, "--pressure-array", "p"], "[0 2 -2 0 0 0 0]", "those of Pa", "--pressure-array")
        field = case.parent / "1/T"
        text = field.read_text()
        field.write_text(text.replace("[0 0 0 1 0 0 0]", "[0 0 0 0 0 0 0]"))
        self.check_refused(
            [case], '"T" has the dimensions [0 0 0 0 0 0 0]', "those of K, [0 0 0 1 0 0 0]", "--temperature"
        )
        with gzip.open(field.with_suffix(".gz"), "wt") as packed:
            packed.write(field.read_text())
        field.unlink()
        self.check_refused([case], '"T" has the dimensions [0 0 0 0 0 0 0]')


if __name__ == "__main__":
    unittest.main()
