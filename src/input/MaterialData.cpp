#include "input/MaterialData.h"

#include "context/Messages.h"
#include "platform/Faults.h"

namespace qnl::input {

namespace {

constexpr double kFreezePressure = 1.0e7;  // Pa
constexpr double kBelowFreezing = 30.0;    // degC
constexpr int kFlakeType = 6;

void ReadFreezeState(FrozenLayerJob& job, const QnlMaterial* material) {
    job.m_dFreezeTemp = QnlGetFreezeTemp(material);
    job.m_dFreezeDensity = QnlGetDensity(material, kFreezePressure, job.m_dFreezeTemp - kBelowFreezing, 0.0);
    LogPlain(job, "FreezeTemp    = %lf \n", job.m_dFreezeTemp);
    LogPlain(job, "FreezeDensity = %lf \n", job.m_dFreezeDensity);
}

void ReportKind(const FrozenLayerJob& job) {
    RecordFault({job.m_szMaterialFile.Text(), "kind", "\"thermoplastic\" or \"thermoset\"", "another kind",
                 "set the kind; there are rules for these two alone"});
}

}  // namespace

}  // namespace qnl::input

int ReadMaterialData(FrozenLayerJob& job, QnlMaterial* material) {
    if (QnlIsThermoplastic(material)) {
        qnl::input::ReadFreezeState(job, material);
    } else if (QnlIsThermoset(material)) {
        job.m_bIsThermoset = 1;
    } else {
        qnl::input::ReportKind(job);
        return -1;
    }
    if (material->typeCode == qnl::input::kFlakeType) {
        job.m_bIsFlakeMaterial = 1;
        qnl::LogGeneral(job, "isFlakeMaterial\n");
    }
    if (job.m_bIsFlakeMaterial != 1) {
        job.m_bIsFlakeLightIntensity = 0;
        qnl::LogGeneral(job, "isFlakeLightIntensity fasle\n");
    }
    QnlReleaseMaterial(material);
    return 1;
}
