#include "imports/TemperatureChecks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "text/NumberText.h"

namespace qnl::imports {

namespace {

constexpr float kAbsoluteZero = -273.15F;
constexpr float kHottest = 5000.0F;

/// What is known of the temperatures of all times.
struct Temperatures {
    float low;
    float high;
    bool whole;  ///< no value has a fraction
    bool named;  ///< the array has no usual name of temperatures, an option names it
    const std::string& array;

    std::string Range() const {
        return "temperatures from " + text::NumberText(static_cast<double>(low)) + " to " +
               text::NumberText(static_cast<double>(high)) + " °C";
    }
};

bool AreWhole(const ImportedCase& imported) {
    const auto place = static_cast<std::size_t>(Quantity::Temperature);
    return std::all_of(imported.times.begin(), imported.times.end(), [&](const ImportedTime& time) {
        const std::vector<float>& values = time.values[place].front();
        return std::all_of(values.begin(), values.end(),
                           [](float value) { return std::trunc(value) == value; });
    });
}

std::string OfUnit(const ImportRequest& request, const Temperatures& found) {
    constexpr float kColdestKelvin = 270.0F;
    constexpr float kColdestMould = -100.0F;
    const bool isKelvin = request.temperatureUnit == "K";
    if (!isKelvin && found.low > kColdestKelvin) {
        return found.Range() + " look like kelvin: then add --temperature-unit K";
    }
    if (isKelvin && found.low < kColdestMould) {
        return found.Range() + ": the file looks like degrees Celsius, then say --temperature-unit degC";
    }
    return {};
}

std::string OfSameness(const Temperatures& found) {
    if (found.low < found.high) {
        return {};
    }
    return "\"" + found.array + "\" is " + text::NumberText(static_cast<double>(found.low)) +
           " °C at every node and time: if it is not the temperature of the part, name another array with "
           "--temperature";
}

std::string OfWholeNumbers(const Temperatures& found) {
    if (!found.named || !found.whole || !(found.low < found.high)) {
        return {};
    }
    return "\"" + found.array +
           "\" has whole numbers only, as ids have and hardly temperatures: if it is none, "
           "name another array with --temperature";
}

std::string OfFreezing(const Temperatures& found, std::optional<double> freeze) {
    if (!freeze || (static_cast<double>(found.low) < *freeze && *freeze <= static_cast<double>(found.high))) {
        return {};
    }
    const bool below = *freeze <= static_cast<double>(found.low);
    return found.Range() + " are all " + (below ? "above" : "below") + " the freeze temperature, " +
           text::NumberText(*freeze) + " °C, so that " + (below ? "nothing" : "everything") +
           " is frozen at every time: check --temperature-unit, --freeze-temperature or --material";
}

}  // namespace

void CheckTemperatures(const std::vector<float>& values, const std::string& array, const std::string& file) {
    const auto impossible = [](float value) { return value < kAbsoluteZero || value > kHottest; };
    const auto first = std::find_if(values.begin(), values.end(), impossible);
    if (first != values.end()) {
        const auto count = std::count_if(values.begin(), values.end(), impossible);
        throw interop::ForeignProblem(
            file + ": \"" + array + "\" is no temperature at " + text::CountText(count, "node") +
            ", the first " + text::NumberText(static_cast<double>(*first)) +
            " °C; if that marks missing values write them as not a number, which --allow-missing fills, "
            "else name another array with --temperature, or its unit with --temperature-unit");
    }
}

std::vector<std::string> TemperatureWarnings(const ImportRequest& request, const ImportedCase& imported,
                                             std::optional<double> freezeTemperature) {
    const auto [low, high] = QuantityRange(imported, Quantity::Temperature);
    if (low > high) {
        return {};
    }
    const ChosenArray& chosen = imported.Chosen(Quantity::Temperature);
    const Temperatures found{low, high, AreWhole(imported), chosen.by == ChosenBy::Option, chosen.name};
    std::string unit = OfUnit(request, found);
    if (!unit.empty()) {
        return {std::move(unit)};  // what else looks odd follows from it
    }
    std::vector<std::string> warnings;
    for (std::string& sentence : std::array<std::string, 3>{OfSameness(found), OfWholeNumbers(found),
                                                            OfFreezing(found, freezeTemperature)}) {
        if (!sentence.empty()) {
            warnings.push_back(std::move(sentence));
        }
    }
    return warnings;
}

}  // namespace qnl::imports
