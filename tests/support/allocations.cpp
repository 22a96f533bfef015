#include "support/allocations.h"

#include <algorithm>
#include <cstddef>

#if !defined(__SANITIZE_ADDRESS__)
#include <malloc.h>
#endif

namespace {

// Plain numbers: they are counted before anything is constructed. Other threads are not waited for,
// and what they ask for is not counted.
thread_local qint64 allocated = 0;
thread_local qint64 living = 0;
thread_local qint64 most = 0;

void note(qint64 bytes)
{
    ++allocated;
    living += bytes;
    most = std::max(most, living);
}

} // namespace

namespace corvane::test {

Allocations::Allocations()
    : m_countBefore(allocated)
    , m_bytesBefore(living)
{
    most = living;
}

qint64 Allocations::count() const
{
    return allocated - m_countBefore;
}

qint64 Allocations::peak() const
{
    return most - m_bytesBefore;
}

} // namespace corvane::test

#if defined(__SANITIZE_ADDRESS__)

// Called by the sanitizer's own malloc. Their header, sanitizer/allocator_interface.h, comes with
// clang only.
extern "C" {

size_t __sanitizer_get_allocated_size(const volatile void *block);

void __sanitizer_malloc_hook(const volatile void *, size_t size)
{
    note(qint64(size));
}

void __sanitizer_free_hook(const volatile void *block)
{
    living -= qint64(__sanitizer_get_allocated_size(block));
}
}

#else

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the system library's own names
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void __libc_free(void *block);
// NOLINTEND(bugprone-reserved-identifier)

static void *noted(void *block)
{
    note(qint64(malloc_usable_size(block)));
    return block;
}

void *malloc(size_t size)
{
    return noted(__libc_malloc(size));
}

void *calloc(size_t count, size_t size)
{
    return noted(__libc_calloc(count, size));
}

void *realloc(void *block, size_t size)
{
    living -= qint64(malloc_usable_size(block));
    return noted(__libc_realloc(block, size));
}

void free(void *block)
{
    living -= qint64(malloc_usable_size(block));
    __libc_free(block);
}
}

#endif
