#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// A mesh put together from nodes and elements that go by numbers of their own, in the order of a file.
class LabelledMesh {
public:
    /// False, and nothing is added, for a number that is there already.
    bool AddNode(std::int64_t label, const std::array<double, 3>& place);
    /// An element by the numbers of its nodes, which may follow later; corners come first, the order of
    /// further nodes is of no account.
    bool AddElement(std::int64_t label, int vtkType, const std::vector<std::int64_t>& nodes);

    std::size_t Nodes() const { return labels_.size(); }
    std::size_t Elements() const { return mesh_.cellTypes.size(); }
    /// Index from 0; -1 for a number that is not there.
    std::int64_t FindNode(std::int64_t label) const;
    std::int64_t FindElement(std::int64_t label) const;

    /// Calls `visit` with number and index of each element with a number from `first`, which is at least 1,
    /// to `last`.
    template <typename Visit>
    void ForEachElement(std::int64_t first, std::int64_t last, const Visit& visit) const {
        if (static_cast<std::uint64_t>(last - first) < Elements()) {
            for (std::int64_t i = 0; i <= last - first; ++i) {
                const std::int64_t element = FindElement(first + i);
                if (element >= 0) {
                    visit(first + i, element);
                }
            }
            return;
        }
        for (std::size_t element = 0; element < Elements(); ++element) {
            if (elementLabels_[element] >= first && elementLabels_[element] <= last) {
                visit(elementLabels_[element], static_cast<std::int64_t>(element));
            }
        }
    }

    /// The mesh, and the numbers of its nodes as an array of points; the object is left empty. Raises
    /// ForeignProblem, in the name of `file`, for an element with a node that is not there.
    ForeignSnapshot Take(const std::string& file);

private:
    using Places = std::unordered_map<std::int64_t, std::int64_t>;
    [[noreturn]] void RaiseUnknownNode(const std::string& file, std::size_t place) const;

    ForeignMesh mesh_;  ///< its cells name nodes by number until Take
    std::vector<double> labels_;
    std::vector<std::int64_t> elementLabels_;
    Places nodeOf_;
    Places elementOf_;
};

}  // namespace qnl::interop
