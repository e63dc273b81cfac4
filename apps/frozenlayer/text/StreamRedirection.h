#pragma once

#include <ostream>

namespace qnl::text {

/// While it lives, what is written to one stream goes where another one writes.
class StreamRedirection {
public:
    StreamRedirection(std::ostream& from, const std::ostream& to)
        : from_(from), original_(from.rdbuf(to.rdbuf())) {}
    ~StreamRedirection() {
        from_.flush();
        from_.rdbuf(original_);
    }
    StreamRedirection(const StreamRedirection&) = delete;
    StreamRedirection& operator=(const StreamRedirection&) = delete;

private:
    std::ostream& from_;
    std::streambuf* original_;
};

}  // namespace qnl::text
