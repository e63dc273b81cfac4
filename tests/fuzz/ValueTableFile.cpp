// Tables of values beside a cube: any bytes must give a value for each point at each time, or one refusal.

#include "ForeignInput.h"
#include "InputFile.h"
#include "interop/HeldSeries.h"
#include "interop/TableSeries.h"

namespace {

/// The unit cube with labels 1 to 8.
std::unique_ptr<qnl::interop::ForeignSeries> Cube() {
    qnl::interop::ForeignSnapshot cube;
    cube.mesh.points = {{{0, 0, 0}}, {{1, 0, 0}}, {{1, 1, 0}}, {{0, 1, 0}},
                        {{0, 0, 1}}, {{1, 0, 1}}, {{1, 1, 1}}, {{0, 1, 1}}};
    cube.mesh.cellTypes = {12};
    cube.mesh.offsets = {0, 8};
    cube.mesh.nodes = {0, 1, 2, 3, 4, 5, 6, 7};
    cube.arrays = {{qnl::interop::kLabelArrays.front(), 1, false, {1, 2, 3, 4, 5, 6, 7, 8}}};
    return qnl::interop::HoldSeries(cube, {});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const InputFile file(".csv");
    const std::string& path = file.Write(bytes, count);
    try {
        foreign_input::UseSeries(*qnl::interop::JoinTable(*Cube(), path));
    } catch (const qnl::interop::ForeignProblem& problem) {
        foreign_input::Require(!std::string(problem.what()).empty());
    }
    return 0;
}
