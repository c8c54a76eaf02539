#pragma once

#include <cstddef>
#include <memory>

// Memory for large amounts of data. It uses huge pages if the system allows that, because the page
// fault for each small page takes longer than filling the page.
namespace platform {

struct LargeMemoryRelease {
    std::size_t size;
    void operator()(std::byte *memory) const;
};

using LargeMemory = std::unique_ptr<std::byte[], LargeMemoryRelease>;

// Returns `size` uninitialized bytes. Throws std::bad_alloc.
LargeMemory allocateLargeMemory(std::size_t size);

} // namespace platform
