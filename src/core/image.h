// Images as kernels and drivers see them: a pointer to the first pixel and a row step in bytes.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include <type_traits>
#include "core/checks.h"
#include "core/variant.h"

namespace ORV_VARIANT {

// An element at any address. Images need not be aligned, also not to their elements, so kernels go through this type;
// it costs nothing on x86 and vectorises like a plain element.
template <class T>
struct __attribute__((packed)) LooseElement {
  T value;
  __attribute__((always_inline)) operator T() const { return value; }
  __attribute__((always_inline)) LooseElement& operator=(T other) {
    value = other;
    return *this;
  }
};

template <class T>
using Loose = std::conditional_t<std::is_const<T>::value, const LooseElement<std::remove_const_t<T>>, LooseElement<T>>;

// A typed image. Row y is reached in 64 bits, so rows may be more than 2 GiB apart.
template <class T>
struct Plane {
  T* data;
  int32_t step;

  __attribute__((always_inline)) Loose<T>* row(ptrdiff_t y) const {
    return (Loose<T>*)((uintptr_t)data + (uintptr_t)(y * (ptrdiff_t)step));
  }
  // The image from row `first` of a band on. The offset is a 32-bit product that wraps, as told for bands.
  __attribute__((always_inline)) Plane from(int32_t first) const {
    return {(T*)((uintptr_t)data + (uintptr_t)(ptrdiff_t)wrapMul(step, first)), step};
  }
};

// The elements of a vector, at any address.
template <class T>
__attribute__((always_inline)) static inline Loose<T>* loose(T* p) {
  return (Loose<T>*)(void*)(uintptr_t)p;
}

// The raw pointer of a loose row, for vector loads and stores, which take any address.
template <class T>
static inline T* raw(LooseElement<T>* p) {
  void* const address = p;
  return (T*)address;
}
template <class T>
static inline const T* raw(const LooseElement<T>* p) {
  const void* const address = p;
  return (const T*)address;
}

}  // namespace ORV_VARIANT
