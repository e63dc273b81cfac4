#include "AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_THREAD__)
#define QNL_FOREIGN_NEW 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define QNL_FOREIGN_NEW 1
#endif
#endif

namespace {

std::atomic<std::size_t> allocations{0};
std::atomic<std::size_t> largest{0};

}  // namespace

bool CountsAllocations() {
#ifdef QNL_FOREIGN_NEW
    return false;
#else
    return true;
#endif
}

std::size_t AllocationCount() {
    return allocations;
}

std::size_t LargestAllocation() {
    return largest;
}

void ForgetLargestAllocation() {
    largest = 0;
}

#ifndef QNL_FOREIGN_NEW

void* operator new(std::size_t size) {
    ++allocations;
    if (size > largest) {
        largest = size;
    }
    void* memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

#endif
