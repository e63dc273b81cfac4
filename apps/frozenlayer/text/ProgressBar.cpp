#include "text/ProgressBar.h"

#include <algorithm>

#include "text/TextTable.h"

namespace qnl::text {

namespace {

constexpr int kBarWidth = 30;

std::string Percent(double share) {
    const std::string number = std::to_string(static_cast<int>(share * 100.0));
    return std::string(3 - std::min<std::size_t>(3, number.size()), ' ') + number + " %";
}

std::string Bar(double share) {
    const auto filled = static_cast<std::size_t>(share * kBarWidth);
    return "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] ";
}

}  // namespace

void ProgressBar::Show(double share, const std::string& text) {
    share = std::clamp(share, 0.0, 1.0);
    const std::string progress = Percent(share) + "  " + text;
    if (isTerminal_) {
        Draw(Bar(share) + progress);
        return;
    }
    constexpr std::chrono::seconds kPause(10);
    if (Clock::now() - lastPlainLine_ >= kPause) {
        Line(progress);
    }
}

void ProgressBar::Line(const std::string& text) {
    Clear();
    out_ << text + "\n";
    out_.flush();
    lastPlainLine_ = Clock::now();
}

void ProgressBar::Clear() {
    if (!drawn_.empty()) {
        Draw("");
        out_ << "\r";
        out_.flush();
    }
}

void ProgressBar::Draw(const std::string& line) {
    if (line == drawn_) {
        return;
    }
    const std::size_t old = CharacterCount(drawn_);
    const std::size_t now = CharacterCount(line);
    out_ << "\r" + line + std::string(old > now ? old - now : 0, ' ');
    out_.flush();
    drawn_ = line;
}

}  // namespace qnl::text
