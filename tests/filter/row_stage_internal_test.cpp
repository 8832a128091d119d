// Border kinds and side flags that the row stage offers inside the library only, with a strip of exactly its size.
#include "filter/pipeline_cases.h"
#include "filter/row_stage.h"

using namespace test;

namespace {

template <class P, class T, class D>
using Stage = void (*)(Plane<const P>, D* const*, int32_t, int32_t, const RowFilter<P, T>&, void*);

template <class P, class T, class D>
void stageCases(const char* name, Stage<P, T, D> stage, int channels) {
  Random r(seed());
  const OrvBorderType kinds[] = {orvBorderConst, orvBorderRepl, orvBorderWrap, orvBorderMirr, orvBorderMirrR};
  for (const Shape& shape : shapes()) {
    const int size = someKernelSize(r), anchor = r.in(0, size - 1);
    const OrvBorderType border = kinds[r.in(0, 4)] | (r.in(0, 3) * orvBorderInMemLeft);
    const int32_t divisor = someDivisor<P>(r);
    const Context context(std::string(name) + " " + std::to_string(shape.width) + "x" + std::to_string(shape.height) +
                          ", kernel " + std::to_string(size) + ", anchor " + std::to_string(anchor) + ", border " +
                          std::to_string(border) + ", divisor " + std::to_string(divisor));
    const GuardedArray<T> taps(someTaps<T>(r, size));
    const Margin margin{border & orvBorderInMemLeft ? anchor : 0, 0,
                        border & orvBorderInMemRight ? size - 1 - anchor : 0, 0};
    Image<P> src(r, shape.width, shape.height, channels, margin), value(r, 1, 1, channels);
    Image<D> dst(r, shape.width, shape.height, channels);
    src.fill(r, false);
    value.fill(r, false);
    const Plane<const P> plane{src.data(), src.step()};
    std::vector<D*> rows;
    for (int y = 0; y < shape.height; ++y) rows.push_back(rowAddress(dst, y));
    forEachSetting(false, [&] {
      const Guarded strip((size_t)rowStripBytes<P>(size, channels), !r.one(4), (size_t)r.in(0, 5));
      dst.restore();
      stage(plane, rows.data(), shape.width, shape.height,
            {taps.data(), size, anchor, channels, border, value.data(), divisor}, strip.data());
      CHECK(src.unchanged() && strip.intact() && dst.onlyRegionChanged(), "written outside");
      for (int y = 0; y < shape.height; ++y)
        for (int x = 0; x < shape.width * channels; ++x) {
          const D want =
              reference::filteredRow<P, D>(rowAddress(src, y), shape.width, channels, x, taps.data(), size, anchor,
                                           border, value.data(), divisor, reference::Arithmetic::scaled);
          if (!same(dst.at(x, y), want))
            return fail("element %d of row %d is %.9g, not %.9g", x, y, (double)dst.at(x, y), (double)want);
        }
    });
  }
}

}  // namespace

TEST(kindsAndFlags) {
  for (const int channels : {1, 3}) {
    stageCases<uint8_t, int16_t, int16_t>("8u16s", RowStage_8u16s, channels);
    stageCases<int16_t, int16_t, int16_t>("16s", RowStage_16s, channels);
    stageCases<uint16_t, uint16_t, uint16_t>("16u", RowStage_16u, channels);
    stageCases<float, float, float>("32f", RowStage_32f, channels);
  }
}
