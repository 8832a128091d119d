// Sub-pixel windows around a centre: sweeps against the plain form, and the order of checks.
#pragma once
#include "detect/table_roles.h"
#include "reference/pointwise.h"
#include "reference/subpixel.h"

namespace test {

// A source of a size of its own, which the roles behind it may ask for.
template <class S>
struct SizedSource : ImageRole<S> {
  OrvSize* size;
  explicit SizedSource(OrvSize* told) : ImageRole<S>(In<S>()), size(told) {}
  void prepare(Random& r, const Shape&) {
    *size = {r.in(1, r.one(2) ? 8 : 90), r.in(1, r.one(3) ? 50 : 8)};
    this->candidate.emplace(r, size->width, size->height, 1);
    this->candidate->fill(r, std::is_floating_point<S>::value);
  }
  std::tuple<S*, int32_t, OrvSize> arguments(Side) { return {this->candidate->data(), this->candidate->step(), *size}; }
};

// A centre for windows of all sorts: inside, over each side, over all, beside, far away, on whole and half pixels.
struct Centre : Value<OrvPoint32f> {
  const OrvSize* size;  // of the source
  explicit Centre(const OrvSize* told) : Value({OrvPoint32f()}), size(told) {}
  static float coordinate(Random& r, int length, int extent) {
    const int mode = r.in(0, 5);
    if (mode == 0) return (float)r.in(-3 * extent, length + 3 * extent) * 0.5f;
    if (mode == 1) return (float)(r.one(2) ? -1 : 1) * (float)r.in(100, 100000) * 1.25f;
    if (mode == 2) return (float)(extent - 1) * 0.5f - (float)r.in(0, 3) * 1e-7f;  // the first pixel, or just before
    return (float)r.in(-1000 * extent, 1000 * (length + extent)) * 0.001f;
  }
  void prepare(Random& r, const Shape& shape) {
    chosen.x = coordinate(r, size->width, shape.width), chosen.y = coordinate(r, size->height, shape.height);
  }
};

// Functions that aren't `whole` write from min to max only.
template <class S, class D, class Function>
void windows(const char* name, Function function, const reference::Subpixel<S, D>& pixel, bool whole = true) {
  const auto called = [&](const S* src, int32_t srcStep, OrvSize srcRoi, D* dst, int32_t dstStep, OrvSize roi,
                          OrvPoint32f centre, int32_t* min, int32_t* max) {
    return function(src, srcStep, srcRoi, dst, dstStep, roi, centre, (OrvPoint*)(void*)min, (OrvPoint*)(void*)max);
  };
  const auto plain = [&](const S* src, int32_t srcStep, OrvSize srcRoi, D* dst, int32_t dstStep, OrvSize roi,
                         OrvPoint32f centre, int32_t* min, int32_t* max) {
    const reference::Place across(centre.x, roi.width, srcRoi.width), down(centre.y, roi.height, srcRoi.height);
    min[0] = across.low, min[1] = down.low, max[0] = across.high, max[1] = down.high;
    reference::forEachElement(roi, 1, [&](int y, int x) {
      if (!whole && !(across.inside(x) && down.inside(y))) return;
      S p[4];
      for (int n = 0; n < 4; ++n)
        p[n] = reference::load(src, srcStep, (int)std::clamp<int64_t>(down.first + y + n / 2, 0, srcRoi.height - 1),
                               (int)std::clamp<int64_t>(across.first + x + n % 2, 0, srcRoi.width - 1));
      const D value = pixel(p, across.fraction, down.fraction, across.inside(x), down.inside(y));
      reference::store(dst, dstStep, y, x, value);
    });
  };
  Random r(seed());
  OrvSize size{};
  std::vector<Shape> list;
  for (int i = 0; i < (quick() ? 60 : 400); ++i) list.push_back({r.in(1, 70), r.in(1, i % 4 ? 7 : 40)});
  const SizedSource<S> src(&size);
  const Result<int32_t> point(2);
  sweepShapes(name, called, plain, list, r, src, Out<D>(), Roi(), Centre(&size), point, point);
  walkArguments(name, called,
                eachOf(Fault::null, {0, 1, 4, 5}) +
                    std::vector<Told>{{Fault::width, 0}, {Fault::height, 0}, {Fault::width, 2}, {Fault::height, 2}} +
                    eachOf(Fault::smallStep, {0, 1}) + eachOf(Fault::misalignedStep, alignedOf<S, D>()),
                src, Out<D>(), Roi(), Centre(&size), point, point);
}

// The same of a function with a scale factor.
template <class Function>
void scaledWindows(const char* name, Function function, int32_t factor, bool whole = true) {
  const auto scaled = [=](auto... argument) { return function(argument..., factor); };
  windows(name, scaled, reference::Subpixel<uint8_t, uint16_t>{factor}, whole);
}

}  // namespace test
