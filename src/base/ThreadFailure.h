#pragma once

#include <atomic>
#include <exception>

namespace qnl {

/// Carries the first exception out of a parallel region.
class ThreadFailure {
public:
    bool Caught() const { return caught_.load(std::memory_order_relaxed); }

    /// Runs `work` unless some thread has failed already; keeps the first exception.
    template <typename Work>
    void Guard(Work work) noexcept {
        if (Caught()) {
            return;
        }
        try {
            work();
        } catch (...) {
            if (!caught_.exchange(true)) {
                exception_ = std::current_exception();
            }
        }
    }

    /// To be called after the region.
    void RaiseAgain() const {
        if (exception_) {
            std::rethrow_exception(exception_);
        }
    }

private:
    std::atomic<bool> caught_{false};
    std::exception_ptr exception_;
};

}  // namespace qnl
