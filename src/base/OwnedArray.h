#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace qnl {

/// Owner of an array, released with array delete. Indexed by integers of any type.
template <typename T>
class OwnedArray : public std::unique_ptr<T[]> {
public:
    using Owner = std::unique_ptr<T[]>;
    using Owner::Owner;
    using Owner::operator=;

    OwnedArray() = default;
    OwnedArray(Owner&& owner) noexcept : Owner(std::move(owner)) {}  // NOLINT(google-explicit-constructor)

    template <typename Index>
    T& operator[](Index index) const {
        return this->get()[index];
    }
};

/// Zeroed array of entries 1 to `count`, whose entry 0 is unused.
template <typename T>
OwnedArray<T> NewFromOne(int count) {
    return std::make_unique<T[]>(static_cast<std::size_t>(count) + 1);
}

}  // namespace qnl
