#include "counting_allocator.h"

#include <malloc.h>

#include <cstddef>

// The program's own malloc family, forwarding to glibc's. Defined in the
// executable, it serves every library of the process (Qt and ovui use both
// malloc and operator new), so the count sees all of their blocks.
extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void __libc_free(void*);
}

namespace {

bool g_counting = false;
long long g_held = 0;

// Usable size: what the heap really sets aside for the block.
void* Counted(void* p) {
  if (p && g_counting) g_held += static_cast<long long>(malloc_usable_size(p));
  return p;
}

void Uncount(void* p) {
  if (p && g_counting) g_held -= static_cast<long long>(malloc_usable_size(p));
}

}  // namespace

extern "C" {

void* malloc(size_t size) {
  return Counted(__libc_malloc(size));
}

void* calloc(size_t n, size_t size) {
  return Counted(__libc_calloc(n, size));
}

void* realloc(void* p, size_t size) {
  Uncount(p);
  return Counted(__libc_realloc(p, size));
}

void free(void* p) {
  Uncount(p);
  __libc_free(p);
}

void* memalign(size_t alignment, size_t size) {
  return Counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(size_t alignment, size_t size) {
  return Counted(__libc_memalign(alignment, size));
}

int posix_memalign(void** out, size_t alignment, size_t size) {
  void* p = Counted(__libc_memalign(alignment, size));
  if (!p) return 12;  // ENOMEM
  *out = p;
  return 0;
}

}  // extern "C"

namespace bench {

CountBytes::CountBytes() {
  g_held = 0;
  g_counting = true;
}

CountBytes::~CountBytes() {
  g_counting = false;
}

long long CountBytes::Held() const {
  return g_held;
}

}  // namespace bench
