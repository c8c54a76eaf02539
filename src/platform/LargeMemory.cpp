#include "platform/LargeMemory.h"

#include <sys/mman.h>

#include <cstdlib>
#include <new>

namespace platform {
namespace {

constexpr std::size_t hugePageSize = std::size_t{2} << 20U;

} // namespace

void LargeMemoryRelease::operator()(std::byte *memory) const
{
    if (size < hugePageSize)
        std::free(memory);
    else
        ::munmap(memory, size);
}

LargeMemory allocateLargeMemory(std::size_t size)
{
    // Freeing large blocks makes malloc() return memory to the system, which slows down small
    // allocations elsewhere.
    void *memory = size < hugePageSize
        ? std::malloc(size)
        : ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == nullptr || memory == MAP_FAILED)
        throw std::bad_alloc();
    if (size >= hugePageSize)
        ::madvise(memory, size, MADV_HUGEPAGE); // only advice: its failure does not matter
    return LargeMemory(static_cast<std::byte *>(memory), {size});
}

} // namespace platform
