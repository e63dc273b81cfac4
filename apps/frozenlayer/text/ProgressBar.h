#pragma once

#include <chrono>
#include <ostream>
#include <string>

namespace qnl::text {

/// Progress for people: on a terminal a bar that is redrawn in place, elsewhere a plain line every ten
/// seconds. Finished lines stand above the bar.
class ProgressBar {
public:
    ProgressBar(std::ostream& out, bool isTerminal) : out_(out), isTerminal_(isTerminal) {}
    ~ProgressBar() { Clear(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// `share` of the whole is done, 0 to 1; `text` says what is going on.
    void Show(double share, const std::string& text);
    void Line(const std::string& text);
    /// Takes the bar off the terminal.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    void Draw(const std::string& line);

    std::ostream& out_;
    bool isTerminal_;
    std::string drawn_;
    Clock::time_point lastPlainLine_ = Clock::now();
};

}  // namespace qnl::text
