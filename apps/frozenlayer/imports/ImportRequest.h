#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qnl::imports {

/// What an import is to do. Empty names of arrays: those that are commonly used are looked for.
struct ImportRequest {
    std::vector<std::string> files;
    std::string folder;  ///< of the project
    bool force = false;
    std::string stage = "flow";
    std::string temperature;
    std::string velocity;
    std::string displacement;
    std::string coolingTime;
    std::string density;               ///< g/cm3, never looked for
    std::string shrinkage;             ///< %, never looked for
    std::string pressureArray;         ///< never looked for; empty: the same pressure everywhere
    std::string pressureUnit;          ///< of that array; empty: that of the format, MPa where it has none
    std::string densityUnit;           ///< empty: that of the format, g/cm3 where it has none
    std::string velocityUnit;          ///< empty: that of the format, lengthUnit per second where it has none
    std::string temperatureUnit;       ///< empty: that of the format, degC where it has none
    std::string lengthUnit;            ///< empty: that of the format, mm where it has none
    std::vector<std::string> parts;    ///< named blocks that are the part; empty: all but the ignored
    std::vector<std::string> ignored;  ///< named blocks that are not
    std::string regionArray;
    std::vector<int> runner;
    std::vector<int> special;
    std::vector<double> times;  ///< s, one per output time; empty: those of the files
    double wall = 0.0;          ///< mm; 0: not given
    double pressure = 10.0;     ///< MPa
    double allowMissing = 0.1;  ///< share of the nodes without a value that is filled, %
    std::string material;
    std::optional<double> freezeTemperature;  ///< degC
};

}  // namespace qnl::imports
