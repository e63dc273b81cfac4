#pragma once

#include <memory>
#include <optional>
#include <string>

#include "context/FrozenLayerJob.h"
#include "kernel/MeshKernelState.h"
#include "profile/JobViews.h"
#include "profile/resolved/ResolvedProfile.h"
#include "series/SeriesFiles.h"

namespace qnl::series {

/// The mesh and the material of a stage of a project, opened to look at its results, and the temperatures
/// of its output times: inside the cells for results of the resolved mode, else as the corrected mode reads
/// them, as averages of faces and cells.
class OpenedProject {
public:
    /// Raises InputProblem when the run file, the mesh or the material of the series' project is missing
    /// or cannot be used.
    explicit OpenedProject(const SeriesFiles& series);
    /// The same with the mesh that a run of the project has read.
    OpenedProject(const SeriesFiles& series, kernel::KernelMesh mesh);

    const kernel::KernelMesh& Mesh() const { return job_->m_pOptKer->m_pState->mesh; }
    const FrozenLayerJob& Job() const { return *job_; }
    const std::string& MeshFile() const { return meshFile_; }
    const std::string& MaterialFile() const { return materialFile_; }

    /// degC; none for a material that does not freeze at one temperature.
    std::optional<double> FreezeTemperature() const;
    /// False for stages without temperatures.
    bool HasTemperatures() const { return job_->m_bHasWarp == 0; }

    bool SeesInsideCells() const { return job_->m_options.Rules().seesInsideCells; }

    /// Reads the temperatures of one output time and carries them to faces and cells, or recovers their
    /// gradients. Raises InputProblem
    /// when the stage file cannot be used.
    void LoadTemperatures(const std::string& stageFile);
    /// Temperatures of the last output time read, degC.
    profile::PassElementField Temperatures() const;
    /// Makes the temperature inside the cells at that time, of results of the resolved mode. Does nothing
    /// when it is made already.
    void RecoverTemperature();
    /// The temperature inside the cells, once it is made.
    const profile::ProfileInput& TemperatureField() const { return temperatureField_; }
    profile::PassElementMesh Elements() const { return profile::MeshOf(*job_); }

private:
    void NameInputs(const SeriesFiles& series);
    void OpenInputs(const SeriesFiles& series, RunStep first, RunStep last);

    std::string meshFile_;
    std::string materialFile_;
    std::unique_ptr<FrozenLayerJob> job_;
    profile::ProfileInput temperatureField_;
    bool hasTemperatureField_ = false;  ///< of the output time last read
};

}  // namespace qnl::series
