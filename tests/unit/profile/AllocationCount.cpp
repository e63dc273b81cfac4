#include "AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "support/Sanitizers.h"

namespace {

std::atomic<std::size_t> allocations{0};
std::atomic<std::size_t> largest{0};

}  // namespace

bool CountsAllocations() {
    return QNL_THREAD_SANITIZER == 0;
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

#if QNL_THREAD_SANITIZER == 0

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
