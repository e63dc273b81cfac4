#pragma once

namespace qnl::kernel {

/// Asks the processor to load the line at an address that is read soon; does nothing where unknown.
inline void Prefetch(const void* address) {
#if defined(__GNUC__)
    __builtin_prefetch(address);
#else
    static_cast<void>(address);
#endif
}

}  // namespace qnl::kernel
