// Opening, closing and their differences as tables of the mask filters.
#pragma once
#include "morph/morph_cases.h"

namespace test {

inline auto initRun(OrvStatus (*f)(OrvSize, const uint8_t*, OrvSize, OrvMorphAdvState*, uint8_t*)) {
  return [=](OrvSize roi, const uint8_t* mask, OrvSize size, void* state, uint8_t* buffer) {
    return f(roi, mask, size, (OrvMorphAdvState*)state, buffer);
  };
}

#define ADV_FILTER(name, tag, op) \
  { "orviMorph" #name "Border_" #tag, Op::op, morphRun(orviMorph##name##Border_##tag) }
#define ADV_FAMILY(T, C, packed, tag)                                                              \
  MorphFamily<T> {                                                                                 \
    C, packed, orviMorphAdvGetSize_##tag, initRun(orviMorphAdvInit_##tag), {                       \
      ADV_FILTER(Open, tag, open), ADV_FILTER(Close, tag, close), ADV_FILTER(Tophat, tag, tophat), \
          ADV_FILTER(Blackhat, tag, blackhat), ADV_FILTER(Gradient, tag, gradient)                 \
    }                                                                                              \
  }

}  // namespace test
