// Carves the caller's scratch memory into pieces.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "core/variant.h"

namespace ORV_VARIANT {

struct Scratch {
  uint8_t* next;

  // `count` elements at an address of the given alignment; what alignment skips is part of every reported size.
  template <class T>
  T* take(ptrdiff_t count, uintptr_t alignment = 16) {
    T* const piece = (T*)(void*)(((uintptr_t)next + alignment - 1) & ~(alignment - 1));
    next = (uint8_t*)(piece + count);
    return piece;
  }
};

}  // namespace ORV_VARIANT
