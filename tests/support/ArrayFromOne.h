#pragma once

#include <initializer_list>
#include <vector>

#include "base/OneBased.h"

/// Owner of a 1-based array written out in a test. Entry 0 holds a value that would show in any result.
template <typename T>
class ArrayFromOne {
public:
    ArrayFromOne(std::initializer_list<T> values) : values_{static_cast<T>(-987654)} {
        values_.insert(values_.end(), values);
    }
    operator qnl::OneBased<const T>() const { return {values_.data(), Count()}; }
    /// An array of numbers, read as ids.
    template <typename IdType>
    operator qnl::OneBasedIds<IdType>() const {
        return {values_.data(), Count()};
    }
    int Count() const { return static_cast<int>(values_.size()) - 1; }

private:
    std::vector<T> values_;
};

using Doubles = ArrayFromOne<double>;
using Ints = ArrayFromOne<int>;
