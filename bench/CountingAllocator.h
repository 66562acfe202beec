// Replaces the global operator new of a benchmark program to count heap allocations in gAllocations.
// Include it in exactly one source file of a program.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

inline std::size_t gAllocations = 0;

// The replacement pair is malloc and free on both sides; GCC cannot see that through the inlined
// library calls and warns of a mismatch.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void* operator new(std::size_t size) {
    ++gAllocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) {
        return p;
    }
    throw std::bad_alloc();
}

void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

#pragma GCC diagnostic pop
