#ifndef OVUI_BENCH_COUNTING_ALLOCATOR_H_
#define OVUI_BENCH_COUNTING_ALLOCATOR_H_

#include <cstddef>

namespace bench {

// Heap bytes held by the whole process (malloc and operator new alike),
// counted only inside a CountBytes scope; one scope at a time.
class CountBytes {
 public:
  CountBytes();
  ~CountBytes();
  // Bytes allocated and not yet freed since the scope began.
  long long Held() const;
};

}  // namespace bench

#endif  // OVUI_BENCH_COUNTING_ALLOCATOR_H_
