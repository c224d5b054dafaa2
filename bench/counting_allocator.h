#pragma once

// Counts every heap allocation of the program that includes this header, so
// that a benchmark can report how many fall inside its measured loop. Include
// it in one file of a program only: it replaces the global operator new.

#include <atomic>
#include <cstdlib>
#include <new>

namespace sodam::bench {
inline std::atomic<long long> allocations{0};
}  // namespace sodam::bench

// The replacements pair malloc with free, which GCC cannot see through once
// it has inlined them into their callers.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

void* operator new(std::size_t size) {
  sodam::bench::allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
  throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
  std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
  std::free(p);
}
