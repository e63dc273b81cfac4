"""Material file: freeze temperature and density at freezing."""

import math
import tomllib
from dataclasses import dataclass

TAIT = 0.0894
PACKING_PRESSURE = 1.0e7  # Pa
BELOW_FREEZING = 30.0  # K


@dataclass
class Material:
    thermoset: bool
    flake: bool
    freeze_temperature: float = 0.0
    freeze_density: float = 0.0


def tait_density(pvt, pressure, celsius):
    kelvin = celsius + 273.15
    melt = kelvin > pvt["b5"] + pvt["b6"] * pressure
    b1, b2, b3, b4 = (pvt[f"b{k}{'m' if melt else 's'}"] for k in range(1, 5))
    above = kelvin - pvt["b5"]
    volume = (b1 + b2 * above) * (1.0 - TAIT * math.log(1.0 + pressure / (b3 * math.exp(-b4 * above))))
    if not melt:
        volume += pvt["b7"] * math.exp(pvt["b8"] * above - pvt["b9"] * pressure)
    return 1e-3 / volume


def read_material(path):
    with open(path, "rb") as file:
        data = tomllib.load(file)
    flake = data.get("type_code", 0) == 6
    if data["kind"] == "thermoset":
        return Material(True, flake)
    freeze = float(data["freeze_temperature"])
    density = data.get("density")
    if density is None:
        density = tait_density(data["pvt"], PACKING_PRESSURE, freeze - BELOW_FREEZING)
    return Material(False, flake, freeze, float(density))
