#pragma once

#include <atomic>

namespace qnl {

/// A value that several threads may store at once, each storing the same. Reads and writes as a plain
/// value.
template <typename T>
class RelaxedValue {
public:
    RelaxedValue(T value) : value_(value) {}  // NOLINT(google-explicit-constructor): stands for a T
    operator T() const {
        return value_.load(std::memory_order_relaxed);
    }  // NOLINT(google-explicit-constructor)
    RelaxedValue& operator=(T value) {
        value_.store(value, std::memory_order_relaxed);
        return *this;
    }

private:
    std::atomic<T> value_;
};

}  // namespace qnl
