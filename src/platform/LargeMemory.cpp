#include "LargeMemory.h"

#include <sys/mman.h>

#include <cstdlib>
#include <new>

namespace platform {

void LargeMemoryRelease::operator()(std::byte *memory) const
{
    std::free(memory);
}

LargeMemory allocateLargeMemory(std::size_t size)
{
    constexpr std::size_t largePage = std::size_t{2} << 20U;
    const bool isLarge = size >= largePage;
    const std::size_t roundedUp = (size + largePage - 1) / largePage * largePage;
    void *memory = isLarge ? std::aligned_alloc(largePage, roundedUp) : std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    if (isLarge)
        ::madvise(memory, roundedUp, MADV_HUGEPAGE); // a wish, which may be left ungranted
    return LargeMemory(static_cast<std::byte *>(memory));
}

} // namespace platform
