#include "platform/QnlMaterial.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>

#include "material/material_file.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/Faults.h"
#include "platform/HostFiles.h"

namespace {

/// The handle that goes out and what it stands for.
struct OpenMaterial {
    QnlMaterial record{};
    qnl::Material material;
};

const qnl::Material& MaterialOf(const QnlMaterial* handle) {
    static const qnl::Material none;
    return handle != nullptr ? static_cast<const OpenMaterial*>(handle->properties)->material : none;
}

qnl::Material ReadMaterial(const std::string& path) {
    const HostFile file(path, "rb");
    std::string text;
    if (!file || !ReadAll(file.Get(), text)) {
        throw qnl::MaterialFault(0, "the file cannot be read");
    }
    return qnl::ParseMaterial(text);
}

std::string OnOneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

void Report(const std::string& path, const qnl::MaterialFault& fault) {
    const std::string line = fault.Line() > 0 ? "line " + std::to_string(fault.Line()) : std::string();
    const std::string place = line.empty() ? path : path + ", " + line;
    const std::string reason = OnOneLine(fault.what());
    CQNLKNLogErrMsgTool::printLogStringContent(OnOneLine("Material " + place + ": " + reason), "", std::cout);
    RecordFault({path, line, "a material file", reason, "correct the file and run again"});
}

}  // namespace

QnlMaterial* QnlGetMaterial(const char* path) {
    const std::string file = path != nullptr ? path : "";
    try {
        auto open = std::make_unique<OpenMaterial>();
        open->material = ReadMaterial(file);
        open->record.properties = open.get();
        open->record.typeCode = open->material.typeCode;
        return &open.release()->record;
    } catch (const qnl::MaterialFault& fault) {
        Report(file, fault);
        return nullptr;
    }
}

bool QnlIsThermoplastic(const QnlMaterial* material) {
    return MaterialOf(material).kind == qnl::MaterialKind::Thermoplastic;
}

bool QnlIsThermoset(const QnlMaterial* material) {
    return MaterialOf(material).kind == qnl::MaterialKind::Thermoset;
}

double QnlGetFreezeTemp(const QnlMaterial* material) {
    return MaterialOf(material).freezeTemperature;
}

double QnlGetDensity(const QnlMaterial* material, double pressure, double temperature, double /*rate*/) {
    return Density(MaterialOf(material), pressure, temperature);
}

void QnlReleaseMaterial(QnlMaterial* material) {
    if (material != nullptr) {
        const std::unique_ptr<OpenMaterial> owner(static_cast<OpenMaterial*>(material->properties));
    }
}
