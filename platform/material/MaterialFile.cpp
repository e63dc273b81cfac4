#include "material/MaterialFile.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

#include <toml++/toml.h>

namespace qnl::material {
namespace {

constexpr double kKelvinAtZeroCelsius = 273.15;
constexpr double kGramPerCubicCentimetre = 1e-3;

/// Where the program asks for the density: this pressure, this far below the freeze temperature.
constexpr double kAskedPressure = 1.0e7;
constexpr double kAskedBelowFreezing = 30.0;

std::size_t LineOf(const toml::node& node) {
    return node.source().begin.line;
}

/// The node of a key; null when it is absent and not needed.
const toml::node* Find(const toml::table& table, const char* key, bool needed) {
    const toml::node* node = table.get(key);
    if (node == nullptr && needed) {
        throw MaterialFault(LineOf(table), std::string("needs the key \"") + key + "\"");
    }
    return node;
}

/// The number of a key, `absent` when it is absent and not needed.
double Number(const toml::table& table, const char* key, bool needed, double absent = 0.0) {
    const toml::node* node = Find(table, key, needed);
    if (node == nullptr) {
        return absent;
    }
    const std::optional<double> value = node->value<double>();
    if (!node->is_number() || !value || !std::isfinite(*value)) {
        throw MaterialFault(LineOf(*node), std::string("\"") + key + "\" must be a finite number");
    }
    return *value;
}

double PositiveNumber(const toml::table& table, const char* key) {
    const double value = Number(table, key, true);
    if (!(value > 0.0)) {
        throw MaterialFault(LineOf(*table.get(key)), std::string("\"") + key + "\" must be above 0");
    }
    return value;
}

std::string Text(const toml::table& table, const char* key, bool needed) {
    const toml::node* node = Find(table, key, needed);
    if (node != nullptr && !node->is_string()) {
        throw MaterialFault(LineOf(*node), std::string("\"") + key + "\" must be a text");
    }
    return node == nullptr ? std::string() : node->value_or(std::string());
}

int TypeCode(const toml::table& table) {
    const toml::node* node = Find(table, "type_code", false);
    if (node == nullptr) {
        return 0;
    }
    const toml::value<std::int64_t>* code = node->as_integer();
    if (code == nullptr || code->get() < std::numeric_limits<int>::min() ||
        code->get() > std::numeric_limits<int>::max()) {
        throw MaterialFault(LineOf(*node), "\"type_code\" must be an integer of 32 bits");
    }
    return static_cast<int>(code->get());
}

MaterialKind KindOf(const std::string& word) {
    if (word == "thermoplastic") {
        return MaterialKind::Thermoplastic;
    }
    return word == "thermoset" ? MaterialKind::Thermoset : MaterialKind::Other;
}

TaitLaw ReadTaitLaw(const toml::table& pvt) {
    TaitLaw law;
    const std::pair<const char*, double*> coefficients[] = {
        {"b1m", &law.melt.b1},  {"b2m", &law.melt.b2},  {"b3m", &law.melt.b3},  {"b4m", &law.melt.b4},
        {"b1s", &law.solid.b1}, {"b2s", &law.solid.b2}, {"b3s", &law.solid.b3}, {"b4s", &law.solid.b4},
        {"b5", &law.b5},        {"b6", &law.b6},        {"b7", &law.b7},        {"b8", &law.b8},
        {"b9", &law.b9},
    };
    for (const auto& [key, value] : coefficients) {
        *value = Number(pvt, key, true);
    }
    return law;
}

std::variant<double, TaitLaw> ReadDensity(const toml::table& table, bool needed) {
    const toml::node* pvt = table.get("pvt");
    const toml::node* constant = table.get("density");
    if (pvt != nullptr && constant != nullptr) {
        throw MaterialFault(LineOf(*constant), "give \"density\" or the table \"pvt\", not both");
    }
    if (pvt != nullptr) {
        if (!pvt->is_table()) {
            throw MaterialFault(LineOf(*pvt), "\"pvt\" must be a table");
        }
        return ReadTaitLaw(*pvt->as_table());
    }
    if (constant != nullptr) {
        return PositiveNumber(table, "density");
    }
    if (needed) {
        throw MaterialFault(LineOf(table), "needs the key \"density\" or the table \"pvt\"");
    }
    return 0.0;
}

void CheckAskedDensity(const Material& material, const toml::table& table) {
    const double density =
        Density(material, kAskedPressure, material.freezeTemperature - kAskedBelowFreezing);
    if (!std::isfinite(density) || density <= 0.0) {
        const toml::node* pvt = table.get("pvt");
        throw MaterialFault(LineOf(pvt != nullptr ? *pvt : table),
                            "\"pvt\" gives no positive density at 1e7 Pa, 30 degrees below freezing");
    }
}

toml::table Parse(std::string_view text) {
    try {
        return toml::parse(text);
    } catch (const toml::parse_error& error) {
        throw MaterialFault(error.source().begin.line, std::string(error.description()));
    }
}

}  // namespace

Material ParseMaterial(std::string_view text) {
    const toml::table table = Parse(text);
    Material material;
    material.name = Text(table, "name", false);
    material.kind = KindOf(Text(table, "kind", true));
    material.typeCode = TypeCode(table);
    const bool thermoplastic = material.kind == MaterialKind::Thermoplastic;
    material.freezeTemperature = Number(table, "freeze_temperature", thermoplastic);
    material.density = ReadDensity(table, thermoplastic);
    if (thermoplastic) {
        CheckAskedDensity(material, table);
    }
    return material;
}

double Density(const Material& material, double pressure, double temperature) {
    if (const auto* law = std::get_if<TaitLaw>(&material.density)) {
        return kGramPerCubicCentimetre / SpecificVolume(*law, pressure, temperature + kKelvinAtZeroCelsius);
    }
    return std::get<double>(material.density);
}

}  // namespace qnl::material
