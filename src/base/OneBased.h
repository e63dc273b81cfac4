#pragma once

#include "base/Assert.h"

namespace qnl {

/// View of entries 1 to Count() of an array whose entry 0 is unused.
template <typename T>
class OneBased {
public:
    OneBased() = default;
    /// `entryZero` points to the unused entry 0; the array holds count + 1 entries.
    OneBased(T* entryZero, int count) : entryZero_(entryZero), count_(count) {}

    T& operator[](int i) const {
        QNL_ASSERT(i >= 1 && i <= count_, i, count_);
        return entryZero_[i];
    }
    int Count() const { return count_; }
    explicit operator bool() const { return entryZero_ != nullptr; }

private:
    T* entryZero_ = nullptr;
    int count_ = 0;
};

}  // namespace qnl
