#include "bench/support/heapcount.h"

#include <algorithm>
#include <cstdint>

#include <malloc.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);
}

namespace {

bool counting = false;
std::int64_t allocations = 0;
std::int64_t held = 0;
std::int64_t peak = 0;

void* taken(void* block)
{
    if (counting && block) {
        ++allocations;
        held += static_cast<std::int64_t>(malloc_usable_size(block));
        peak = std::max(peak, held);
    }
    return block;
}

void given(void* block)
{
    if (counting && block)
        held -= static_cast<std::int64_t>(malloc_usable_size(block));
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) void* malloc(std::size_t size)
{
    return taken(__libc_malloc(size));
}

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size)
{
    return taken(__libc_calloc(count, size));
}

__attribute__((visibility("default"))) void* realloc(void* block, std::size_t size)
{
    given(block);
    return taken(__libc_realloc(block, size));
}

__attribute__((visibility("default"))) void free(void* block)
{
    given(block);
    __libc_free(block);
}
}

namespace bench {

void HeapCount::Start()
{
    allocations = held = peak = 0;
    counting = true;
}

void HeapCount::Stop(Result* result)
{
    counting = false;
    result->num_allocs = allocations;
    result->max_bytes_used = peak;
}

} // namespace bench
