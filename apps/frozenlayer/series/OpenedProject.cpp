#include "series/OpenedProject.h"

#include <iostream>
#include <sstream>

#include "input/MaterialData.h"
#include "input/ResultFileSet.h"
#include "input/TemperatureData.h"
#include "job/CarriedState.h"
#include "mesh/DataExtension.h"
#include "mesh/FieldStorage.h"
#include "mesh/MeshImport.h"
#include "platform/QnlMaterial.h"
#include "project/ProjectInputs.h"
#include "text/StreamRedirection.h"

namespace qnl::series {

namespace {

/// What the libraries print on standard output while `work` runs, without the closing line ends.
template <typename Work>
std::string Overhear(const Work& work) {
    std::ostringstream messages;
    {
        const text::StreamRedirection redirection(std::cout, messages);
        work();
    }
    std::string text = messages.str();
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
}

[[noreturn]] void Refuse(const std::string& message, const std::string& path, const char* what) {
    throw project::InputProblem(message.empty() ? project::NativePath(path) + ": " + what + " cannot be read"
                                                : message);
}

}  // namespace

OpenedProject::OpenedProject(const ResultSeries& series) : job_(std::make_unique<FrozenLayerJob>()) {
    const project::StageFile& base = series.base;
    project::CheckProjectFiles(base);
    const project::ProjectInputs inputs = project::ReadProjectInputs(base);
    meshFile_ = inputs.meshFile;
    materialFile_ = inputs.materialFile;
    job_->m_options.corrected = true;
    const std::string stageFile = base.Path();
    job_->m_szInputResult = stageFile.c_str();
    job_->m_szLogFile.Set(base.Sibling(".lgz"));
    job_->m_szMeshFile.Set(meshFile_);
    Overhear([&] { SelectResultFiles(*job_); });
    job_->m_bHasIntermediateTimes = series.smoothedNormals ? 1 : 0;
    job_->m_szInputResult = nullptr;
    OpenMaterial();
    OpenMesh();
}

std::optional<double> OpenedProject::FreezeTemperature() const {
    return job_->m_bIsThermoset != 0 ? std::nullopt : std::optional<double>(job_->m_dFreezeTemp);
}

void OpenedProject::OpenMaterial() {
    int status = -1;
    const std::string message = Overhear([&] {
        QnlMaterial* material = QnlGetMaterial(materialFile_.c_str());
        status = material != nullptr ? ReadMaterialData(*job_, material) : -1;
    });
    if (status != 1) {
        Refuse(message, materialFile_, "the material");
    }
}

void OpenedProject::OpenMesh() {
    int status = -1;
    const std::string message = Overhear([&] { status = mesh::ReadMesh(*job_); });
    if (status != 1) {
        Refuse(message, meshFile_, "the mesh");
    }
    mesh::SetUpThreads(*job_);
    if (mesh::TakeOverMeshData(*job_) != 1) {
        Refuse({}, meshFile_, "the mesh");
    }
}

void OpenedProject::LoadTemperatures(const std::string& stageFile) {
    if (!project::FileExists(stageFile)) {
        throw project::InputProblem(project::NativePath(stageFile) +
                                    " is missing: it has the temperatures of one output time");
    }
    int status = -1;
    const std::string message = Overhear([&] {
        job::DropCarriedState(*job_);
        status = LoadTemperatureData(*job_, stageFile.c_str());
    });
    if (status != 1) {
        throw project::InputProblem(project::NativePath(stageFile) +
                                    ": the temperatures of this output time cannot be read" +
                                    (message.empty() ? "" : " (" + message + ")"));
    }
    mesh::ExtendNodeToSurface(*job_);
    mesh::ExtendNodeToInnerCell(*job_);
}

profile::PassElementField OpenedProject::Temperatures() const {
    return profile::FieldOf(*job_, kTemperature);
}

}  // namespace qnl::series
