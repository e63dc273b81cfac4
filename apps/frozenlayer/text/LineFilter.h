#pragma once

#include <functional>
#include <ostream>
#include <streambuf>
#include <string>

namespace qnl::text {

/// Hands what is written to it on line by line, each as `rewrite` gives it; what comes last without a line
/// end goes when the filter does.
class LineFilter : public std::streambuf {
public:
    /// Takes a line without its end, gives the text to write, line ends included.
    using Rewrite = std::function<std::string(const std::string& line)>;

    LineFilter(const std::ostream& out, Rewrite rewrite);
    ~LineFilter() override;
    LineFilter(const LineFilter&) = delete;
    LineFilter& operator=(const LineFilter&) = delete;

protected:
    int_type overflow(int_type character) override;
    int sync() override;

private:
    std::ostream out_;  ///< of its own, so that no other stream is tied to it
    Rewrite rewrite_;
    std::string line_;
};

}  // namespace qnl::text
