#pragma once

#include <stdexcept>

namespace qnl::kernel {

/// A fault of a mesh file or its contents, in one line that names the entity, what was expected and what
/// was found.
class MeshFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace qnl::kernel
