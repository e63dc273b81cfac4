#pragma once

#include <map>
#include <string>

#include "platform/ResultOrigin.h"

namespace qnl {

/// What the input files of a run hold, each read once, when first asked for: before it is used, so that a
/// file that changes under the run differs from what is noted.
class InputDigests {
public:
    const FileDigest& Of(const std::string& path) {
        const auto known = digests_.find(path);
        return known != digests_.end() ? known->second : digests_.emplace(path, DigestOf(path)).first->second;
    }

private:
    std::map<std::string, FileDigest> digests_;
};

}  // namespace qnl
