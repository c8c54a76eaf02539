#pragma once

#include <cstddef>
#include <memory>

// Memory for much data that is written from front to end. Where the system can, it comes in large
// pages: the first touch of each small one costs more than filling it.
namespace platform {

struct LargeMemoryRelease {
    std::size_t size;
    void operator()(std::byte *memory) const;
};

using LargeMemory = std::unique_ptr<std::byte[], LargeMemoryRelease>;

// Not initialised. Throws std::bad_alloc.
LargeMemory allocateLargeMemory(std::size_t size);

} // namespace platform
