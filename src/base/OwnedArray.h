#pragma once

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

}  // namespace qnl
