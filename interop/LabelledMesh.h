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
