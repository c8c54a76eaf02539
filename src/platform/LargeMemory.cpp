#include "platform/LargeMemory.h"

#include <sys/mman.h>

#include <cstdlib>
#include <new>

namespace platform {

namespace {

constexpr std::size_t largePage = std::size_t{2} << 20U;

}

void LargeMemoryRelease::operator()(std::byte *memory) const
{
    if (size < largePage)
        std::free(memory);
    else
        ::munmap(memory, size);
}

LargeMemory allocateLargeMemory(std::size_t size)
{
    // Large pieces would make malloc give the small ones of others back to the system each time.
    void *memory = size < largePage
        ? std::malloc(size)
        : ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == nullptr || memory == MAP_FAILED)
        throw std::bad_alloc();
    if (size >= largePage)
        ::madvise(memory, size, MADV_HUGEPAGE); // a wish, which may be left ungranted
    return LargeMemory(static_cast<std::byte *>(memory), {size});
}

} // namespace platform
