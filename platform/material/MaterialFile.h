#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "material/TaitLaw.h"

namespace qnl::material {

enum class MaterialKind { Thermoplastic, Thermoset, Other };

struct Material {
    std::string name;
    MaterialKind kind = MaterialKind::Other;
    int typeCode = 0;                             ///< 6: flake-filled
    double freezeTemperature = 0.0;               ///< degC; 0 where the file gives none
    std::variant<double, TaitLaw> density = 0.0;  ///< constant in g/cm3, 0 where the file gives none, or law
};

/// Why a material file cannot be used; line 0 when no line is concerned.
class MaterialFault : public std::runtime_error {
public:
    MaterialFault(std::size_t line, const std::string& reason) : std::runtime_error(reason), line_(line) {}
    std::size_t Line() const { return line_; }

private:
    std::size_t line_;
};

/// Reads a TOML text with the keys name, kind ("thermoplastic", "thermoset" or another word), type_code,
/// freeze_temperature (degC) and density (g/cm3) or a table pvt with b1m to b4m, b1s to b4s, b5 to b9
/// (SI). Needed are kind and, for a thermoplastic, the freeze temperature and one of density and pvt, which
/// must give a positive density at the state where the program asks for it. Raises MaterialFault.
Material ParseMaterial(std::string_view text);

/// Density, g/cm3, at a pressure in Pa and a temperature in degC.
double Density(const Material& material, double pressure, double temperature);

}  // namespace qnl::material
