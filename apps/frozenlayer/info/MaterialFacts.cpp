#include <iostream>
#include <memory>
#include <sstream>

#include "info/FactReaders.h"
#include "platform/QnlMaterial.h"
#include "project/ProjectPaths.h"
#include "text/StreamRedirection.h"

namespace qnl::info {

namespace {

struct Release {
    void operator()(QnlMaterial* material) const { QnlReleaseMaterial(material); }
};
using Material = std::unique_ptr<QnlMaterial, Release>;

/// The line that the library prints about a fault becomes the exception's text.
Material OpenMaterial(const std::string& path) {
    std::ostringstream messages;
    Material material;
    {
        const text::StreamRedirection redirection(std::cout, messages);
        material.reset(QnlGetMaterial(project::WindowsStyle(path).c_str()));
    }
    if (!material) {
        std::string text = messages.str();
        text.erase(text.find_last_not_of("\r\n") + 1);
        throw project::InputProblem(text.empty() ? project::NativePath(path) + ": the material cannot be read"
                                                 : text);
    }
    return material;
}

}  // namespace

FileFacts ReadMaterialFacts(const std::string& path) {
    constexpr double kAmbientPressure = 1e5;
    constexpr double kRoomTemperature = 25.0;
    constexpr int kFlakeCode = 6;
    const Material material = OpenMaterial(path);
    const bool thermoplastic = QnlIsThermoplastic(material.get());
    const bool thermoset = QnlIsThermoset(material.get());
    FileFacts facts;
    facts.Add("material", "Kind", "",
              std::string(thermoplastic ? "thermoplastic"
                          : thermoset   ? "thermoset"
                                        : "other"));
    facts.Add("type_code", "Type code", "", std::int64_t{material->typeCode});
    facts.Add("flake_filled", "Flake-filled", "", material->typeCode == kFlakeCode);
    if (thermoplastic) {
        const double freeze = QnlGetFreezeTemp(material.get());
        facts.Add("freeze_temperature_degc", "Freeze temperature", "°C", freeze);
        facts.Add("density_freeze_g_cm3", "Density at the freeze temperature and 0.1 MPa", "g/cm³",
                  QnlGetDensity(material.get(), kAmbientPressure, freeze, 0.0));
        facts.Add("density_25_degc_g_cm3", "Density at 25 °C and 0.1 MPa", "g/cm³",
                  QnlGetDensity(material.get(), kAmbientPressure, kRoomTemperature, 0.0));
    }
    return facts;
}

}  // namespace qnl::info
