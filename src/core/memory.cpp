// Typed memory from the core library.
#include "core/primitives.h"
#include "core/checks.h"
#include "core/orvcore_contract.h"

namespace {

template <class T>
T* allocate(int32_t length) {
  return length <= 0 ? nullptr : (T*)orvMalloc(wrapMul(length, (int32_t)sizeof(T)));
}

}  // namespace

uint8_t* orvsMalloc_8u(int32_t length) { return allocate<uint8_t>(length); }
uint16_t* orvsMalloc_16u(int32_t length) { return allocate<uint16_t>(length); }
int32_t* orvsMalloc_32s(int32_t length) { return allocate<int32_t>(length); }
float* orvsMalloc_32f(int32_t length) { return allocate<float>(length); }
double* orvsMalloc_64f(int32_t length) { return allocate<double>(length); }

void orvsFree(void* memory) { orvFree(memory); }
