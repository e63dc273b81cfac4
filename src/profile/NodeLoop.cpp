#include "profile/NodeLoop.h"

#include <omp.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "base/ThreadFailure.h"
#include "mesh/MeshNodes.h"
#include "platform/Faults.h"
#include "profile/NodeEvaluation.h"
#include "profile/NodeOrder.h"
#include "profile/ResolvedFields.h"
#include "profile/ResultTargets.h"

namespace qnl::profile {

namespace {

/// Progress of the loop; told on the main thread only.
class Progress {
public:
    Progress(RunObserver* observer, int total) : observer_(observer), total_(total) {}

    void NodeDone(int thread) {
        constexpr int kBetweenReports = 512;
        const int done = done_.fetch_add(1, std::memory_order_relaxed) + 1;
        if (observer_ != nullptr && thread == 0 && done - reported_ >= kBetweenReports) {
            Report(done);
        }
    }
    /// Tells what NodeDone left untold.
    void Finish() {
        if (observer_ != nullptr && reported_ < total_) {
            Report(total_);
        }
    }

private:
    void Report(int done) {
        reported_ = done;
        observer_->NodesEvaluated(done, total_);
    }

    RunObserver* observer_;
    int total_;
    std::atomic<int> done_{0};
    int reported_ = 0;
};

/// Nodes whose volume shrinkage was above 100 %.
struct ShrinkageFaults {
    int nodes = 0;
    ListPosition first{std::numeric_limits<int>::max()};

    void Add(ListPosition position) {
        ++nodes;
        first = std::min(first, position);
    }
    void Add(const ShrinkageFaults& other) {
        nodes += other.nodes;
        first = std::min(first, other.first);
    }
};

void RecordShrinkageFaults(const FrozenLayerJob& job, const ShrinkageFaults& faults) {
    if (faults.nodes == 0) {
        return;
    }
    const NodeLabel label = mesh::LabelOf(job, mesh::ListedNode(job, faults.first));
    RecordFault({"", "sink depth", "a volume shrinkage of at most 100 %",
                 "more than 100 % along the normals of " + std::to_string(faults.nodes) +
                     " nodes, the first with label " + std::to_string(label.Value()) + "; taken as 100 %",
                 "check the volume shrinkage of the stage result"});
}

/// Evaluates the node at one position of the list, stores its results and gives them.
NodeProfileResult EvaluateListedNode(FrozenLayerJob& job, ListPosition position, const ResultTargets& targets,
                                     ProfileScratch& scratch) {
    const NodeId node = mesh::ListedNode(job, position);
    const Vector3 place = mesh::PlaceOf(job, node);
    const Vector3 inward = mesh::InwardNormal(job, node);
    NodeProfileResult result;
    CalcuFrozenAtNode(job, position.Value(), place.x, place.y, place.z, inward.x, inward.y, inward.z, result,
                      scratch);
    targets.Store(result, node.Value());
    job.m_pHasProfile[node.Value()] = result.hasProfile ? 1 : 0;
    if (!job.m_wallLayers.empty()) {
        job.m_wallLayers[static_cast<std::size_t>(node.Value())] = result.layers;
    }
    return result;
}

std::vector<ListPosition> OrderOfTheList(const FrozenLayerJob& job) {
    std::vector<ListPosition> order(static_cast<std::size_t>(job.m_nSurfaceNodes));
    std::iota(order.begin(), order.end(), ListPosition(1));
    return order;
}

/// Made once: every output time has the same list. Any order of all positions gives the same results.
const std::vector<ListPosition>& KeptNodeOrder(FrozenLayerJob& job) {
    if (job.m_evaluationOrder.size() != static_cast<std::size_t>(job.m_nSurfaceNodes)) {
        job.m_evaluationOrder = NodeOrder(job);
    }
    return job.m_evaluationOrder;
}

/// The share of one thread in the loop.
void RunShare(FrozenLayerJob& job, const std::vector<ListPosition>& order, const ResultTargets& targets,
              const ProfileInput& fields, ThreadFailure& failure, Progress& progress,
              ShrinkageFaults& faults) {
    ProfileScratch scratch;
    scratch.resolved.TakeInput(fields);
    const int thread = omp_get_thread_num();
#pragma omp for schedule(dynamic, 1)
    for (std::size_t i = 0; i < order.size(); ++i) {
        failure.Guard([&] {
            const ListPosition position = order[i];
            if (EvaluateListedNode(job, position, targets, scratch).shrinkageBeyondWhole) {
                faults.Add(position);
            }
            progress.NodeDone(thread);
        });
    }
}

}  // namespace

void EvaluateSurfaceNodes(FrozenLayerJob& job) {
    if (job.m_pHasProfile == nullptr) {
        job.m_pHasProfile = NewFromOne<unsigned char>(job.m_nNodes);
    }
    if (job.m_nSurfaceNodes < 1) {
        return;
    }
    const ResultTargets targets(job);
    ThreadFailure failure;
    Progress progress(job.m_options.observer, job.m_nSurfaceNodes);
    ShrinkageFaults faults;
    const std::vector<ListPosition> order =
        WindowChangesOnTheWay(job) ? OrderOfTheList(job) : KeptNodeOrder(job);
    omp_set_num_threads(job.m_nThreads);
    ProfileInput fields{};
    if (job.m_options.Rules().seesInsideCells) {
        RecoverTemperature(job);
        job.m_wallLayers.resize(static_cast<std::size_t>(job.m_nNodes) + 1);
        fields = FieldsOf(job);
    }
#pragma omp parallel
    {
        ShrinkageFaults own;
        RunShare(job, order, targets, fields, failure, progress, own);
#pragma omp critical
        faults.Add(own);
    }
    failure.RaiseAgain();
    RecordShrinkageFaults(job, faults);
    progress.Finish();
}

}  // namespace qnl::profile
