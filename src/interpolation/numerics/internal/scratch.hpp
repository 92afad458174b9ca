#pragma once

#include <cstddef>
#include <memory>
#include <new>

#include "foundation/errors.hpp"

namespace varnoth {

/// Uninitialised work space of a kernel. Up to USUAL elements are in the object itself, so that the
/// usual small fit allocates nothing; more are on the heap. Throws ERROR_NO_MEMORY.
template <class T, std::size_t USUAL = 32>
class SCRATCH {
 public:
  explicit SCRATCH(std::size_t count)
      : heap(count > USUAL ? new (std::nothrow) T[count] : nullptr) {
    if (count > USUAL && heap == nullptr) throw ERROR_NO_MEMORY();
  }
  SCRATCH(const SCRATCH&) = delete;
  SCRATCH& operator=(const SCRATCH&) = delete;

  T* Start() { return heap != nullptr ? heap.get() : local; }
  /// The same space for kernels that count from one.
  T* Base() { return Start() - 1; }

 private:
  T local[USUAL];
  std::unique_ptr<T[]> heap;
};

}  // namespace varnoth
