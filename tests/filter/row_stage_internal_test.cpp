// Border kinds and side flags that the row stage offers inside the library only, with a strip of exactly its size.
#include "filter/pipeline_cases.h"
#include "filter/row_stage.h"

using namespace test;

namespace {

template <class P, class T, class D>
void check(const char* name,
           void (*stage)(Plane<const P>, D* const*, int32_t, int32_t, const RowFilter<P, T>&, void*)) {
  std::vector<int> types;
  for (int kind = orvBorderConst; kind <= orvBorderMirrR; ++kind)
    for (int sides = 0; sides < 256; sides += orvBorderInMemLeft) types.push_back(kind | sides);
  for (const int channels : {1, 3}) {
    const auto run = [=](const P* src, int32_t step, D* const* dst, OrvSize roi, const T* kernel, int32_t size,
                         int32_t anchor, int32_t type, const P* value, int32_t divisor, uint8_t* strip) {
      stage({src, step}, dst, roi.width, roi.height, {kernel, size, anchor, channels, type, value, divisor}, strip);
      return orvStatusOk;
    };
    const auto stripSize = [=](OrvSize, int32_t size, int32_t* bytes) {
      return *bytes = (int32_t)rowStripBytes<P>(size, channels), orvStatusOk;
    };
    sweepRows<P, T, D>(name, run, stripSize, channels, types, shapes(), reference::Arithmetic::scaled);
  }
}

}  // namespace

TEST(kindsAndFlags) {
  check("8u16s", RowStage_8u16s);
  check("16s", RowStage_16s);
  check("16u", RowStage_16u);
  check("32f", RowStage_32f);
}
