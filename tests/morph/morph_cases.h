// The mask filters as tables, one for each element type, and how one call of them is checked.
#pragma once
#include <functional>
#include "framework/sweep.h"
#include "reference/morph.h"

namespace test {

using reference::Grid;
using reference::MaskShape;

template <class T>
struct MorphArguments {
  const T* src;
  int32_t srcStep;
  T* dst;
  int32_t dstStep;
  OrvSize roi;
  OrvBorderType border;
  void* state;
  uint8_t* buffer;
  int32_t srcBit = 0, dstBit = 0;
};

enum class Op { erode, dilate, open, close, tophat, blackhat, gradient };

template <class T>
struct MorphFilter {
  const char* name;
  Op op;
  std::function<OrvStatus(const MorphArguments<T>&)> run;
};

template <class T>
struct MorphFamily {
  int channels;
  bool packed;
  std::function<OrvStatus(OrvSize, OrvSize, int32_t*, int32_t*)> size;
  std::function<OrvStatus(OrvSize, const uint8_t*, OrvSize, void*, uint8_t*)> init;
  std::vector<MorphFilter<T>> filters;
};

template <class T, class State>
auto morphRun(OrvStatus (*f)(const T*, int32_t, T*, int32_t, OrvSize, OrvBorderType, T, State*, uint8_t*)) {
  return [=](const MorphArguments<T>& a) {
    return f(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.border, T(), (State*)a.state, a.buffer);
  };
}
template <class State>
auto morphRun(OrvStatus (*f)(const uint8_t*, int32_t, int32_t, uint8_t*, int32_t, int32_t, OrvSize, OrvBorderType,
                             uint8_t, State*, uint8_t*)) {
  return [=](const MorphArguments<uint8_t>& a) {
    return f(a.src, a.srcStep, a.srcBit, a.dst, a.dstStep, a.dstBit, a.roi, a.border, 1, (State*)a.state, a.buffer);
  };
}

// Masks of every shape: what is left of a rectangle, a disc, a cross, noise, one position, nothing; even sizes too.
inline MaskShape someMask(Random& r, int most) {
  MaskShape mask{r.one(3) ? 3 : r.in(1, most), r.one(3) ? 3 : r.in(1, most), {}};
  const int kind = r.in(0, 7), w = mask.width, h = mask.height, at = r.in(0, w * h - 1);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const int dx = 2 * (x - mask.anchorX) * h, dy = 2 * (y - mask.anchorY) * w;
      bool set = kind <= 1;
      if (kind == 2) set = dx * dx + dy * dy <= w * w * h * h;
      if (kind == 3) set = x == mask.anchorX || y == mask.anchorY;
      if (kind == 4) set = r.one(2);
      if (kind == 5) set = y * w + x == at;
      if (kind == 6) set = x * 2 >= w && y * 3 >= h;
      mask.bytes.push_back((uint8_t)(set ? r.in(1, 255) : 0));
    }
  if (kind == 7 && !r.one(3)) mask.bytes[(size_t)at] = mask.bytes[0] = 1;
  return mask;
}

inline int sidesOf(OrvBorderType border) { return (border & 15) == orvBorderInMem ? 240 : border & 240; }

// What a filter makes of a grid.
template <class T>
Grid<T> plainMorph(Op op, const Grid<T>& in, int sides, const MaskShape& mask) {
  const reference::Part all = {0, 0, in.width, in.height, sides};
  if (op == Op::erode || op == Op::dilate) return foldMask(in, all, mask, op == Op::dilate);
  if (op == Op::open || op == Op::close) return openMask(in, sides, mask, op == Op::close);
  const bool black = op == Op::blackhat, gradient = op == Op::gradient;
  Grid<T> other = gradient ? foldMask(in, all, mask, true) : openMask(in, sides, mask, black);
  Grid<T> plus = black || gradient ? other : in, minus = black ? in : gradient ? foldMask(in, all, mask, false) : other;
  for (size_t i = 0; i < plus.values.size(); ++i) {
    if constexpr (std::is_same<T, float>::value) {
      plus.values[i] = std::max(plus.values[i] - minus.values[i], 0.0f);
    } else {
      const int low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
      plus.values[i] = (T)std::min(std::max((int)plus.values[i] - (int)minus.values[i], low), high);
    }
  }
  return plus;
}

// A pixel's element, or a bit of a packed row, of an image.
template <class T>
T element(const Image<T>& image, bool packed, int bit, int x, int y) {
  if (!packed) return image.at(x, y);
  return (T)((int)image.at((bit + x) >> 3, y) >> ((bit + x) & 7) & 1);
}

// One region under one mask by every filter of a family, at every vector width, in memory of exactly the reported
// sizes at any address. Pixels beyond the region are readable just where the border says so.
template <class T>
void checkMorph(const MorphFamily<T>& family, Random& r, const Shape& shape, const MaskShape& mask,
                OrvBorderType border, int onlyOps = 127) {
  const OrvSize roi = {shape.width, shape.height}, maskSize = {mask.width, mask.height};
  const bool packed = family.packed;
  const int sides = sidesOf(border), c = family.channels;
  const int srcBit = packed ? r.in(0, 15) : 0, dstBit = packed ? r.in(0, 15) : 0;
  const bool twice = family.filters[0].op != Op::erode;  // two folds in a row look as far as the mask is wide
  const int reachX = mask.width - 1, reachY = mask.height - 1;
  const auto margin = [&](int flag, int anchor, int reach) { return sides & flag ? (twice ? reach : anchor) : 0; };
  const Margin m = {margin(64, mask.anchorX, reachX), margin(16, mask.anchorY, reachY),
                    margin(128, reachX - mask.anchorX, reachX), margin(32, reachY - mask.anchorY, reachY)};
  const auto bytesOf = [&](int bits) { return packed ? (bits + 7) >> 3 : bits; };
  const int before = packed ? (m.left + 7 - srcBit > 0 ? (m.left + 7 - srcBit) >> 3 : 0) : m.left;
  Image<T> src(r, bytesOf(srcBit + roi.width + (packed ? m.right : 0)), roi.height, c,
               {before, m.top, packed ? 0 : m.right, m.bottom});
  src.fill(r, false);
  const int spread = 2 * std::max(reachX, reachY);
  Grid<T> grid(roi.width, roi.height, c, spread);
  for (int y = -m.top; y < roi.height + m.bottom; ++y)
    for (int x = -m.left * c; x < (roi.width + m.right) * c; ++x)
      grid.at((x + spread * c) / c - spread, y, (x + spread * c) % c) = element(src, packed, srcBit, x, y);

  // The record may be made for a wider region than it is used on.
  const OrvSize prepared = {roi.width + (r.one(3) ? r.in(0, 9) : 0), roi.height};
  int32_t stateBytes = -1, bufferBytes = -1;
  CHECK(family.size(prepared, maskSize, &stateBytes, &bufferBytes) == orvStatusOk);
  const Guarded state((size_t)stateBytes, !r.one(4), (size_t)r.in(0, 20));
  const Guarded buffer((size_t)bufferBytes, !r.one(4), (size_t)r.in(0, 70));
  CHECK(family.init(prepared, mask.bytes.data(), maskSize, state.data(), buffer.data()) == orvStatusOk);
  const std::vector<uint8_t> held(state.data(), state.data() + stateBytes);
  for (const MorphFilter<T>& filter : family.filters) {
    if (!(onlyOps >> (int)filter.op & 1)) continue;
    char text[160];
    snprintf(text, sizeof text, "%s %dx%d mask %dx%d border %d bits %d %d", filter.name, roi.width, roi.height,
             mask.width, mask.height, border, srcBit, dstBit);
    const Context context(text);
    Image<T> dst(r, bytesOf(dstBit + roi.width), roi.height, c);
    dst.fill(r, false);
    Grid<T> expected = plainMorph(filter.op, grid, sides, mask);
    // Bits of a byte beside the region must stay, so whole rows are compared.
    const int bits = packed ? 8 * dst.elements() : roi.width * c;
    std::vector<T> want;
    for (int i = 0; i < bits * roi.height; ++i) {
      const int x = i % bits - dstBit, y = i / bits;
      const bool inside = x >= 0 && x < roi.width * c;
      want.push_back(inside ? expected.at(x / c, y, x % c) : element(dst, packed, 0, i % bits, y));
    }
    forEachSetting(false, [&] {
      dst.restore();
      const OrvStatus status = filter.run(
          {src.data(), src.step(), dst.data(), dst.step(), roi, border, state.data(), buffer.data(), srcBit, dstBit});
      if (status != orvStatusOk) return fail("status %d", (int)status);
      CHECK(buffer.intact() && state.intact() && src.unchanged() && dst.onlyRegionChanged(), "written outside");
      CHECK(memcmp(held.data(), state.data(), held.size()) == 0, "the record has changed");
      for (size_t i = 0; i < want.size(); ++i) {
        const int x = (int)i % bits, y = (int)i / bits;
        const T got = element(dst, packed, 0, x, y);
        if (got != want[i])
          return fail("element %d of row %d is %.9g, not %.9g", x - dstBit, y, (double)got, (double)want[i]);
      }
    });
  }
}

inline OrvBorderType someMorphBorder(Random& r) {
  if (r.one(3)) return orvBorderRepl;
  return (r.one(4) ? orvBorderInMem : orvBorderRepl) | (r.one(4) ? 0 : r.in(0, 15) * 16);
}

// Every size, with masks that may be larger than the region; then regions wide enough for strips.
template <class T>
void sweepMorph(const MorphFamily<T>& family) {
  Random r(seed());
  for (const Shape& shape : shapes()) checkMorph(family, r, shape, someMask(r, 7), someMorphBorder(r));
  for (int i = 0; i < (quick() ? 1 : 8); ++i) {
    const Shape shape = {r.in(1, 40), r.in(1, 40)};
    checkMorph(family, r, shape, someMask(r, i % 2 ? 21 : 12), someMorphBorder(r), 1 << r.in(0, 6) | 3);
  }
}

// The checks of the filters of a family, in their order.
template <class T>
void walkMorph(const MorphFamily<T>& family, bool widthTested, const std::vector<Op>& inPlaceRefused = {}) {
  using A = MorphArguments<T>;
  Random r(seed());
  const OrvSize roi = {21, 5}, maskSize = {3, 3};
  const std::vector<uint8_t> mask(9, 1);
  int32_t bytes[2];
  walkArguments("size", family.size,
                eachOf(Fault::null, {2, 3}) + eachOf(Fault::width, {0, 1}) + eachOf(Fault::height, {1}), Roi(),
                Value<OrvSize>({maskSize}), Value<int32_t*>({bytes}), Value<int32_t*>({bytes + 1}));
  CHECK(family.size(roi, maskSize, bytes, bytes + 1) == orvStatusOk);
  std::vector<uint8_t> state((size_t)bytes[0]), buffer((size_t)bytes[1]);
  walkArguments("init", family.init,
                eachOf(Fault::null, {1, 3, 4}) + eachOf(Fault::width, {0, 2}) + eachOf(Fault::height, {2}), Roi(),
                Value<const uint8_t*>({mask.data()}), Value<OrvSize>({maskSize}), Value<void*>({state.data()}),
                Value<uint8_t*>({buffer.data()}));
  family.init(roi, mask.data(), maskSize, state.data(), buffer.data());
  Image<T> src(r, 40, 5, family.channels), dst(r, 40, 5, family.channels);
  const int32_t row = family.packed ? 3 : roi.width * family.channels * (int32_t)sizeof(T);
  std::vector<Check<A>> checks = {
      {"src", orvStatusNullPtr, [](A& a) { a.src = nullptr; }},
      {"dst", orvStatusNullPtr, [](A& a) { a.dst = nullptr; }},
      {"state", orvStatusNullPtr, [](A& a) { a.state = nullptr; }},
      {"buffer", orvStatusNullPtr, [](A& a) { a.buffer = nullptr; }},
  };
  if (family.packed) checks.push_back({"bit offset", orvStatusSize, [](A& a) { a.dstBit = -1; }});
  checks.insert(checks.end(), {{"width", orvStatusSize, [](A& a) { a.roi.width = 0; }},
                               {"height", orvStatusSize, [](A& a) { a.roi.height = 0; }},
                               {"srcStep", orvStatusStep, [=](A& a) { a.srcStep = row - 1; }},
                               {"dstStep", orvStatusStep, [=](A& a) { a.dstStep = row - 1; }}});
  if (sizeof(T) > 1) checks.push_back({"alignment", orvStatusStepAlign, [=](A& a) { a.dstStep = row + 65; }});
  for (const int kind : {0, 2, 3, 4, 16, 64 + 2, 5})
    checks.push_back({"border", orvStatusBorder, [=](A& a) { a.border = kind; }});
  if (widthTested) checks.push_back({"record", orvStatusSize, [](A& a) { a.roi.width = 24; }});
  for (const MorphFilter<T>& filter : family.filters) {
    const Context context(filter.name);
    const bool refused = std::count(inPlaceRefused.begin(), inPlaceRefused.end(), filter.op) > 0;
    if (refused) checks.push_back({"in place", orvStatusInPlace, [](A& a) { a.dst = (T*)a.src; }});
    walkChecks<A>({src.data(), src.step(), dst.data(), dst.step(), roi, orvBorderRepl, state.data(), buffer.data()},
                  checks, filter.run, [&] { return dst.unchanged() && src.unchanged(); });
    if (refused) checks.pop_back();
  }
}

}  // namespace test
