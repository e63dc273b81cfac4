#include "series/OpenedProject.h"

#include <iostream>
#include <sstream>
#include <utility>

#include "host/Interrupts.h"
#include "job/OutputTimes.h"
#include "job/RunSequence.h"
#include "profile/ResolvedFields.h"
#include "project/ProjectInputs.h"
#include "text/StreamRedirection.h"

namespace qnl::series {

namespace {

/// Keeps off standard output what the libraries print; of it, the last step's messages are kept.
class Overhearing : public RunObserver {
public:
    explicit Overhearing(FrozenLayerJob& job) : job_(job), redirection_(std::cout, messages_) {
        job_.m_options.observer = this;
    }
    ~Overhearing() override { job_.m_options.observer = nullptr; }
    Overhearing(const Overhearing&) = delete;
    Overhearing& operator=(const Overhearing&) = delete;

    void StepBegins(RunStep /*step*/, const FrozenLayerJob& /*job*/) override { messages_.str({}); }
    /// Without the closing line ends.
    std::string Text() const {
        std::string text = messages_.str();
        text.erase(text.find_last_not_of("\r\n") + 1);
        return text;
    }

private:
    FrozenLayerJob& job_;
    std::ostringstream messages_;
    text::StreamRedirection redirection_;
};

/// What was wrong with a file; what follows says only that the step failed.
std::string FirstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

[[noreturn]] void Refuse(const std::string& message, const std::string& path, const char* what) {
    throw project::InputProblem(message.empty() ? project::NativePath(path) + ": " + what + " cannot be read"
                                                : message);
}

}  // namespace

OpenedProject::OpenedProject(const SeriesFiles& series) : job_(std::make_unique<FrozenLayerJob>()) {
    NameInputs(series);
    OpenInputs(series, RunStep::ResultFiles, RunStep::MeshData);
}

OpenedProject::OpenedProject(const SeriesFiles& series, kernel::KernelMesh mesh)
    : job_(std::make_unique<FrozenLayerJob>()) {
    NameInputs(series);
    OpenInputs(series, RunStep::ResultFiles, RunStep::Material);
    kernel::AdoptMesh(*job_->m_pOptKer, std::move(mesh));
    OpenInputs(series, RunStep::Threads, RunStep::MeshData);
}

std::optional<double> OpenedProject::FreezeTemperature() const {
    return job_->m_bIsThermoset != 0 ? std::nullopt : std::optional<double>(job_->m_dFreezeTemp);
}

void OpenedProject::NameInputs(const SeriesFiles& series) {
    const project::StageFile& base = series.base;
    project::CheckProjectFiles(base);
    const project::ProjectInputs inputs = project::ReadProjectInputs(base);
    meshFile_ = inputs.meshFile;
    materialFile_ = inputs.materialFile;
    job_->m_options.mode = series.SeesInsideCells() ? Mode::Resolved : Mode::Corrected;
    job_->m_szLogFile.Set(base.Sibling(".lgz"));
    job_->m_szMeshFile.Set(meshFile_);
    job_->m_szMaterialFile.Set(materialFile_);
}

void OpenedProject::OpenInputs(const SeriesFiles& series, RunStep first, RunStep last) {
    const Overhearing overhearing(*job_);
    const std::string stageFile = series.base.Path();
    job_->m_szInputResult = stageFile.c_str();
    const job::SequenceEnd end = job::RunSteps(*job_, first, last);
    job_->m_szInputResult = nullptr;
    job_->m_bHasIntermediateTimes = series.view.smoothedNormals ? 1 : 0;
    if (end.code == job::ExitCode::MaterialFailed) {
        Refuse(FirstLine(overhearing.Text()), materialFile_, "the material");
    }
    if (!end) {
        Refuse(FirstLine(overhearing.Text()), meshFile_, "the mesh");
    }
}

void OpenedProject::LoadTemperatures(const std::string& stageFile) {
    host::RaiseIfInterrupted();
    if (!project::FileExists(stageFile)) {
        throw project::InputProblem(project::NativePath(stageFile) +
                                    " is missing: it has the temperatures of one output time");
    }
    const Overhearing overhearing(*job_);
    if (job::RunTimeSteps(*job_, stageFile.c_str(), RunStep::FreshStart, RunStep::Extension) != 1) {
        const std::string message = overhearing.Text();
        throw project::InputProblem(project::NativePath(stageFile) +
                                    ": the temperatures of this output time cannot be read" +
                                    (message.empty() ? "" : " (" + message + ")"));
    }
    hasTemperatureField_ = false;
}

void OpenedProject::RecoverTemperature() {
    if (!hasTemperatureField_) {
        profile::RecoverTemperature(*job_);
        temperatureField_ = profile::FieldsOf(*job_, profile::FieldsWanted::Temperature);
        hasTemperatureField_ = true;
    }
}

profile::PassElementField OpenedProject::Temperatures() const {
    return profile::FieldOf(*job_, kTemperature);
}

}  // namespace qnl::series
