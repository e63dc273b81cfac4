#include "interop/HeldSeries.h"

#include <utility>

namespace qnl::interop {

namespace {

class HeldSeries : public ForeignSeries {
public:
    HeldSeries(ForeignSnapshot mesh, std::vector<TimedArrays> times, bool isSi)
        : mesh_(std::move(mesh)), times_(std::move(times)), isSi_(isSi) {}

    int Count() const override { return static_cast<int>(times_.size()); }
    bool IsSi() const override { return isSi_; }

    ForeignSnapshot Read(int index) override {
        const TimedArrays& time = times_[static_cast<std::size_t>(index)];
        ForeignSnapshot snapshot = mesh_;
        snapshot.seconds = time.seconds;
        snapshot.arrays.insert(snapshot.arrays.end(), time.arrays.begin(), time.arrays.end());
        return snapshot;
    }

private:
    ForeignSnapshot mesh_;
    std::vector<TimedArrays> times_;
    bool isSi_;
};

}  // namespace

std::unique_ptr<ForeignSeries> HoldSeries(ForeignSnapshot mesh, std::vector<TimedArrays> times, bool isSi) {
    if (times.empty()) {
        times.emplace_back();
    }
    return std::make_unique<HeldSeries>(std::move(mesh), std::move(times), isSi);
}

}  // namespace qnl::interop
