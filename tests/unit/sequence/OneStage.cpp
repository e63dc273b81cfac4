#include "unit/sequence/OneStage.h"

#include "frozen/StageDriver.h"

std::function<int(FrozenLayerJob&)>& TheStage() {
    static std::function<int(FrozenLayerJob&)> stage;
    return stage;
}

int qnl::frozen::RunFrozenLayerStage(FrozenLayerJob& job) {
    return TheStage()(job);
}
