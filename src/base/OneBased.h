#pragma once

#include "base/Assert.h"
#include "base/Id.h"

namespace qnl {

/// The number behind an index.
constexpr int NumberOf(int index) {
    return index;
}
template <typename Tag>
constexpr int NumberOf(Id<Tag> index) {
    return index.Value();
}

/// View of entries 1 to Count() of an array whose entry 0 is unused. `Index` is the one type that it is
/// indexed by: a plain number or the id of what the entries belong to.
template <typename T, typename Index = int>
class OneBased {
public:
    constexpr OneBased() = default;
    /// `entryZero` points to the unused entry 0; the array holds count + 1 entries.
    constexpr OneBased(T* entryZero, int count) : entryZero_(entryZero), count_(count) {}

    T& operator[](Index index) const {
        QNL_ASSERT(NumberOf(index) >= 1 && NumberOf(index) <= count_, NumberOf(index), count_);
        return entryZero_[NumberOf(index)];
    }
    int Count() const { return count_; }
    explicit operator bool() const { return entryZero_ != nullptr; }

private:
    T* entryZero_ = nullptr;
    int count_ = 0;
};

/// View of entries 1 to Count() of an array of plain numbers, read as ids. Arrays that the mesh kernel
/// fills or sorts hold plain numbers.
template <typename IdType>
class OneBasedIds {
public:
    constexpr OneBasedIds() = default;
    /// `entryZero` points to the unused entry 0; the array holds count + 1 entries.
    constexpr OneBasedIds(const int* entryZero, int count) : numbers_(entryZero, count) {}

    IdType operator[](int i) const { return IdType(numbers_[i]); }
    int Count() const { return numbers_.Count(); }

private:
    OneBased<const int> numbers_;
};

}  // namespace qnl
