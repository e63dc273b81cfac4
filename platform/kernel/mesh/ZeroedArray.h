#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>

namespace qnl::kernel {

/// Owner of an array of zeros. The system gives memory to a page of it only when something is written there,
/// so a large array costs what its written entries cost. Raises std::bad_alloc when the system refuses it.
template <typename T>
class ZeroedArray {
    static_assert(std::is_arithmetic_v<T>, "zero bytes must be the number zero");

public:
    ZeroedArray() = default;
    explicit ZeroedArray(std::size_t size)
        : size_(size), values_(static_cast<T*>(std::calloc(size, sizeof(T)))) {
        if (!values_) {
            throw std::bad_alloc();
        }
    }

    std::size_t Size() const { return size_; }
    T* Data() { return values_.get(); }
    const T& operator[](std::size_t i) const { return values_.get()[i]; }

    /// Leaves the page alone when the value is the zero that stands there.
    void Set(std::size_t i, T value) {
        if (value != T{}) {
            values_.get()[i] = value;
        }
    }

private:
    struct Release {
        void operator()(T* values) const { std::free(values); }
    };

    std::size_t size_ = 0;
    std::unique_ptr<T, Release> values_;
};

}  // namespace qnl::kernel
