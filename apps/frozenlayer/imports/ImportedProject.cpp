#include "imports/ImportedProject.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <set>

#include "hdf5/Hdf5.h"
#include "host/Interrupts.h"
#include "imports/ImportStage.h"
#include "kernel/mesh/MeshFile.h"
#include "layout/MarkerLog.h"
#include "layout/ProjectFolders.h"
#include "layout/RunFile.h"
#include "material/MaterialFile.h"
#include "platform/HostFiles.h"
#include "project/FaultReport.h"
#include "project/PlainName.h"
#include "project/ProjectPaths.h"
#include "project/StagingFolder.h"
#include "project/TargetPlace.h"
#include "results/ResultFile.h"
#include "results/StageItems.h"
#include "text/NumberText.h"

namespace qnl::imports {

namespace {

namespace fs = std::filesystem;

constexpr const char* kRun = "1";
const std::set<std::string_view> kProjectFolders{layout::kMeshFolder, layout::kMaterialFolder,
                                                 layout::kAnalysisFolder};

/// Raises what was recorded while a file was being written.
[[noreturn]] void RaiseWriteFault(const std::string& path) {
    const std::vector<Fault> faults = TakeFaults();
    throw project::InputProblem(faults.empty()
                                    ? path + " cannot be written; check the space and the rights there"
                                    : project::FaultSentence(faults.front()));
}

void WriteText(const std::string& path, const std::string& text) {
    ReplacedFile file(path, "wb");
    const bool written =
        file && std::fwrite(text.data(), 1, text.size(), file.Get()) == text.size() && file.Commit();
    if (!written) {
        RaiseWriteFault(project::NativePath(path));
    }
}

std::string ReadText(const std::string& path) {
    const HostFile file(path, "rb");
    std::string text;
    if (!file || !ReadAll(file.Get(), text)) {
        throw project::InputProblem(path +
                                    " cannot be read; give a material file, docs/formats.md tells its keys");
    }
    return text;
}

fs::path WithoutTrailingSlash(const std::string& folder) {
    const fs::path path = fs::path(project::NativePath(folder)).lexically_normal();
    return path.has_filename() ? path : path.parent_path();
}

class ProjectWriter {
public:
    ProjectWriter(const ImportRequest& request, const ImportedCase& imported,
                  const ImportedMaterial& material)
        : request_(request),
          case_(imported),
          material_(material),
          law_(material::ParseMaterial(material.text)),
          stage_(FindImportStage(request.stage)),
          target_(WithoutTrailingSlash(request.folder)),
          name_(project::ProjectName(fs::absolute(target_).filename().string(), kRun)) {}

    ImportedProject Write() {
        project::CheckRoom(target_.parent_path().string(), LeastBytes());
        project::StagingFolder staging(target_.string(), kRun);
        const project::StageFile base{staging.Path(), name_, kRun, std::string(stage_.files.pattern), 0};
        WriteMesh(project::NativePath(layout::MeshPath(staging.Path(), MeshName())));
        WriteText(layout::MaterialPath(staging.Path(), material_.fileName), material_.text);
        WriteText(base.Sibling(".run"), layout::RunFileText(MeshName(), material_.fileName));
        if (case_.times.size() > 1) {
            WriteText(base.RunFolder() + "\\" + std::string(layout::kMarkerLogName), MarkerLogText());
        }
        for (std::size_t i = 0; i < case_.times.size(); ++i) {
            host::RaiseIfInterrupted();
            WriteTime(project::NativePath(base.AtIndex(IndexOf(i)).Path()), i);
        }
        staging.MoveTo(target_.string());
        project::StageFile made = base;
        made.directory = target_.string();
        return {project::NativePath(made.Path()), Computed()};
    }

private:
    /// The values of the stage files; the mesh, which is packed, is not counted.
    std::uintmax_t LeastBytes() const {
        std::uintmax_t values = 0;
        for (const ItemSource& source : stage_.items) {
            const auto place = static_cast<std::size_t>(source.quantity);
            values += source.id != 0 && case_.arrays[place].by != ChosenBy::Nothing ? 1 : 0;
        }
        return values * case_.times.size() * static_cast<std::uintmax_t>(LargestLabel()) * sizeof(float);
    }

    std::string MeshName() const { return name_ + ".hdf"; }

    std::string MarkerLogText() const {
        std::vector<std::string> times;
        for (std::size_t i = 0; i + 1 < case_.times.size(); ++i) {
            times.push_back(text::NumberText(case_.times[i].seconds));
        }
        return layout::MarkerLogText(times);
    }

    void WriteMesh(const std::string& path) const {
        constexpr unsigned kDeflate = 4;
        try {
            kernel::WriteMeshFile(case_.solid.mesh, path, kDeflate);
        } catch (const hdf5::Hdf5Error&) {
            RaiseWriteFault(path);
        }
    }

    /// The last time is the base time, index 0; the others are numbered from 1.
    int IndexOf(std::size_t time) const {
        return time + 1 == case_.times.size() ? 0 : static_cast<int>(time) + 1;
    }

    void WriteTime(const std::string& path, std::size_t place) const {
        const ImportedTime& time = case_.times[place];
        results::StageResult result;
        result.head.mesh = MeshName();
        result.head.material = material_.fileName;
        result.head.project = name_;
        result.producer = {"frozenlayer import", QNL_VERSION_MAJOR, QNL_VERSION_MINOR, QNL_VERSION_PATCH};
        result.time = {IndexOf(place), static_cast<float>(time.seconds), "s"};
        result.maxNode = LargestLabel();
        for (const ItemSource& source : stage_.items) {
            if (source.id != 0) {
                AddItem(source, time, result.items);
            }
        }
        if (!results::WriteStageResult(path, result)) {
            RaiseWriteFault(path);
        }
    }

    int LargestLabel() const {
        const std::vector<int>& labels = case_.solid.mesh.labels;
        return labels.empty() ? case_.solid.mesh.Nodes() : *std::max_element(labels.begin(), labels.end());
    }

    void AddItem(const ItemSource& source, const ImportedTime& time,
                 std::vector<results::ResultItem>& items) const {
        const NodeComponents& given = time.values[static_cast<std::size_t>(source.quantity)];
        const std::string origin = given.empty() ? OriginOf(source.quantity) : "";
        if (given.empty() && origin.empty()) {
            return;
        }
        const std::vector<float> values =
            given.empty() ? Compute(source.quantity, time) : given[source.component];
        results::ResultItem item = results::MakeStageItem(stage_.files.kind, source.id, ByLabel(values));
        item.name += origin.empty() ? "" : " (" + origin + ")";
        items.push_back(std::move(item));
    }

    std::vector<float> ByLabel(const std::vector<float>& values) const {
        const std::vector<int>& labels = case_.solid.mesh.labels;
        if (labels.empty()) {
            return values;
        }
        std::vector<float> dense(static_cast<std::size_t>(LargestLabel()), 0.0F);
        for (std::size_t node = 0; node < values.size(); ++node) {
            dense[static_cast<std::size_t>(labels[node] - 1)] = values[node];
        }
        return dense;
    }

    bool HasLaw() const { return std::holds_alternative<material::TaitLaw>(law_.density); }

    /// How a quantity that is not given is made; empty when it is left out.
    std::string OriginOf(Quantity quantity) const {
        const bool hasPressure = case_.Chosen(Quantity::Pressure).by != ChosenBy::Nothing;
        const std::string uniform = text::NumberText(request_.pressure) + " MPa";
        if (quantity == Quantity::Pressure) {
            return HasLaw() ? uniform + " everywhere" : "";
        }
        const bool hasTemperature = case_.Chosen(Quantity::Temperature).by != ChosenBy::Nothing;
        if (quantity == Quantity::Velocity) {
            return "not given, 0";
        }
        if (quantity == Quantity::Density && !HasLaw()) {
            return material::Density(law_, 0.0, 0.0) > 0.0 ? "computed: constant, from the material" : "";
        }
        const bool fromLaw = quantity == Quantity::Density || quantity == Quantity::Shrinkage;
        return fromLaw && HasLaw() && hasTemperature
                   ? "computed: Tait law at " + (hasPressure ? "the local pressure" : uniform)
                   : "";
    }

    /// Of a quantity with an origin. Shrinkage is 100 (1 - V(25 degC, 0.1 MPa) / V(T, p)).
    std::vector<float> Compute(Quantity quantity, const ImportedTime& time) const {
        constexpr double kPascalPerMegapascal = 1e6;
        constexpr double kReferencePressure = 1e5;
        constexpr double kReferenceTemperature = 25.0;
        std::vector<float> values(case_.solid.pointSource.size(), 0.0F);
        const NodeComponents& temperature = time.values[static_cast<std::size_t>(Quantity::Temperature)];
        if (quantity == Quantity::Velocity || temperature.empty()) {
            return values;
        }
        const NodeComponents& pressures = time.values[static_cast<std::size_t>(Quantity::Pressure)];
        const double reference = material::Density(law_, kReferencePressure, kReferenceTemperature);
        for (std::size_t node = 0; node < values.size(); ++node) {
            const double pressure = pressures.empty()
                                        ? request_.pressure
                                        : std::max(0.0, static_cast<double>(pressures[0][node]));
            const double density = material::Density(law_, pressure * kPascalPerMegapascal,
                                                     static_cast<double>(temperature[0][node]));
            values[node] = static_cast<float>(
                quantity == Quantity::Density ? density : 100.0 * (1.0 - density / reference));
        }
        return values;
    }

    std::vector<std::string> Computed() const {
        std::vector<std::string> sentences;
        for (const QuantityRule& rule : kQuantityRules) {
            const std::string origin = OriginOf(rule.quantity);
            if (stage_.Wants(rule.quantity) && case_.Chosen(rule.quantity).by == ChosenBy::Nothing) {
                sentences.push_back(std::string(rule.name) + ": " + (origin.empty() ? "not given" : origin));
            }
        }
        return sentences;
    }

    const ImportRequest& request_;
    const ImportedCase& case_;
    const ImportedMaterial& material_;
    const material::Material law_;
    const ImportStage& stage_;
    fs::path target_;
    std::string name_;
};

material::Material Parsed(const ImportedMaterial& material, const std::string& path) {
    try {
        return material::ParseMaterial(material.text);
    } catch (const material::MaterialFault& fault) {
        throw project::InputProblem(
            path + (fault.Line() > 0 ? ", line " + std::to_string(fault.Line()) : "") + ": " + fault.what());
    }
}

}  // namespace

ImportedMaterial ChooseMaterial(const ImportRequest& request) {
    if (request.material.empty()) {
        if (!request.freezeTemperature) {
            throw project::InputProblem(
                "the freeze temperature is not known; add --material FILE or --freeze-temperature DEGC");
        }
        return {"material.toml",
                "# Made by frozenlayer import from a freeze temperature alone: the density is assumed.\n"
                "name = \"Freeze temperature only\"\nkind = \"thermoplastic\"\nfreeze_temperature = " +
                    std::to_string(*request.freezeTemperature) + "\ndensity = 1.0\n",
                "freeze temperature given; a density of 1 g/cm³ is assumed", request.freezeTemperature};
    }
    ImportedMaterial material{"", ReadText(request.material), request.material, std::nullopt};
    const material::Material law = Parsed(material, request.material);
    if (law.kind == material::MaterialKind::Thermoplastic) {
        material.freezeTemperature = law.freezeTemperature;
    }
    material.fileName = project::PlainName(fs::path(request.material).stem().string()) + ".toml";
    return material;
}

void CheckProjectFolder(const std::string& folder, bool force) {
    if (folder.empty()) {
        throw project::InputProblem("the name of the project folder is empty; give a name");
    }
    const fs::path path = WithoutTrailingSlash(folder);
    project::CheckWritable(path.parent_path().string());
    if (!fs::exists(path)) {
        return;
    }
    if (!fs::is_directory(path)) {
        throw project::InputProblem(folder + " is a file; name a folder that does not exist yet");
    }
    bool isProject = true;
    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
        isProject = isProject && kProjectFolders.count(entry.path().filename().string()) == 1;
    }
    if (!isProject) {
        throw project::InputProblem(folder +
                                    " exists and holds other files than a project; name another folder");
    }
    if (!fs::is_empty(path) && !force) {
        throw project::InputProblem(folder + " exists; name another folder, or replace it with --force");
    }
}

ImportedProject WriteProject(const ImportRequest& request, const ImportedCase& imported,
                             const ImportedMaterial& material) {
    try {
        return ProjectWriter(request, imported, material).Write();
    } catch (const fs::filesystem_error& failure) {
        throw project::InputProblem(request.folder + " cannot be written (" + failure.code().message() +
                                    "); check the space and the rights there");
    }
}

}  // namespace qnl::imports
