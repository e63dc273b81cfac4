#include "platform/QnlMaterial.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>

#include "material/MaterialFile.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/Faults.h"
#include "platform/HostFiles.h"

namespace qnl::material {

namespace {

/// The handle that goes out and what it stands for.
struct OpenMaterial {
    QnlMaterial record{};
    Material material;
};

const Material& MaterialOf(const QnlMaterial* handle) {
    static const Material none;
    return handle != nullptr ? static_cast<const OpenMaterial*>(handle->properties)->material : none;
}

Material ReadMaterial(const std::string& path) {
    const HostFile file(path, "rb");
    std::string text;
    if (!file || !ReadAll(file.Get(), text)) {
        throw MaterialFault(0, "the file cannot be read");
    }
    return ParseMaterial(text);
}

std::string OnOneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

void Report(const std::string& path, const MaterialFault& fault) {
    const std::string line = fault.Line() > 0 ? "line " + std::to_string(fault.Line()) : std::string();
    const std::string place = line.empty() ? path : path + ", " + line;
    const std::string reason = OnOneLine(fault.what());
    CQNLKNLogErrMsgTool::printLogStringContent(OnOneLine("Material " + place + ": " + reason), "", std::cout);
    RecordFault({path, line, "a material file", reason, "correct the file and run again"});
}

}  // namespace

}  // namespace qnl::material

QnlMaterial* QnlGetMaterial(const char* path) {
    const std::string file = path != nullptr ? path : "";
    try {
        auto open = std::make_unique<qnl::material::OpenMaterial>();
        open->material = qnl::material::ReadMaterial(file);
        open->record.properties = open.get();
        open->record.typeCode = open->material.typeCode;
        return &open.release()->record;
    } catch (const qnl::material::MaterialFault& fault) {
        qnl::material::Report(file, fault);
        return nullptr;
    }
}

bool QnlIsThermoplastic(const QnlMaterial* material) {
    return qnl::material::MaterialOf(material).kind == qnl::material::MaterialKind::Thermoplastic;
}

bool QnlIsThermoset(const QnlMaterial* material) {
    return qnl::material::MaterialOf(material).kind == qnl::material::MaterialKind::Thermoset;
}

double QnlGetFreezeTemp(const QnlMaterial* material) {
    return qnl::material::MaterialOf(material).freezeTemperature;
}

double QnlGetDensity(const QnlMaterial* material, double pressure, double temperature, double /*rate*/) {
    return Density(qnl::material::MaterialOf(material), pressure, temperature);
}

void QnlReleaseMaterial(QnlMaterial* material) {
    if (material != nullptr) {
        const std::unique_ptr<qnl::material::OpenMaterial> owner(
            static_cast<qnl::material::OpenMaterial*>(material->properties));
    }
}
