// Absolute differences.
#include "framework/sweep.h"
#include "reference/pointwise.h"

using namespace test;

namespace {

template <class T>
void absDiff(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step, T* dst, int32_t dstStep, OrvSize roi) {
  reference::forEachElement(roi, 1, [&](int y, int x) {
    const T a = reference::load(src1, src1Step, y, x), b = reference::load(src2, src2Step, y, x);
    reference::store(dst, dstStep, y, x, (T)(a > b ? a - b : b - a));
  });
}

}  // namespace

TEST(bytes) {
  sweep("orviAbsDiff_8u_C1R", orviAbsDiff_8u_C1R, absDiff<uint8_t>, {520, 513}, In<uint8_t>(), In<uint8_t>(),
        Out<uint8_t>(), Roi());
  std::vector<Told> order = pointersThenSizes({0, 1, 2}, 3);
  for (const int position : {0, 1, 2}) order.push_back({Fault::smallStep, position});
  walkArguments("orviAbsDiff_8u_C1R", orviAbsDiff_8u_C1R, order, In<uint8_t>(), In<uint8_t>(), Out<uint8_t>(), Roi());
}
