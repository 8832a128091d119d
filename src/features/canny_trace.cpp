// Canny edges: suppression of what is no maximum across the edge, and the growth of edges.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/canny_trace.cpp"
#include "core/kernels.h"
#include "features/canny.h"

KERNELS_BEGIN

// Most vectors hold no pixel that survived the low threshold; those cost a load, a test and a store.
void CannySuppressRow(const float* above, const float* row, const float* below, uint8_t* map, ptrdiff_t width,
                      float high) {
  Vectors<float>(
      0, width, VECTOR(d, x) {
        const hn::RebindToSigned<decltype(d)> di;
        const hn::Rebind<uint8_t, decltype(d)> d8;
        const auto m = hn::LoadU(d, row + x);
        if (hn::AllFalse(d, hn::Gt(m, hn::Zero(d)))) {
          hn::StoreU(hn::Zero(d8), d8, map + x);
          return;
        }
        const auto code = hn::PromoteTo(di, hn::LoadU(d8, map + x));
        const auto is = [&](int32_t c) { return hn::RebindMask(d, hn::Eq(code, hn::Set(di, c))); };
        const auto alongRow = is(cannyAlongRow), down = is(cannyDown), falling = is(cannyFalling);
        const auto at = [&](const float* p) { return hn::LoadU(d, p + x); };
        auto first = hn::IfThenElse(falling, at(above - 1), at(above + 1));
        auto second = hn::IfThenElse(falling, at(below + 1), at(below - 1));
        first = hn::IfThenElse(down, at(above), hn::IfThenElse(alongRow, at(row - 1), first));
        second = hn::IfThenElse(down, at(below), hn::IfThenElse(alongRow, at(row + 1), second));
        // No neighbour is below 0, so what is above one is no suppressed pixel.
        const auto plateau = hn::And(hn::Or(alongRow, down), hn::Eq(m, second));
        const auto kept = hn::And(hn::Gt(m, first), hn::Or(hn::Gt(m, second), plateau));
        const auto strong = hn::RebindMask(di, hn::Gt(m, hn::Set(d, high)));
        const auto mark = hn::IfThenElse(strong, hn::Set(di, cannyStrong), hn::Set(di, cannyWeak));
        hn::StoreU(hn::DemoteTo(d8, hn::IfThenElseZero(hn::RebindMask(di, kept), mark)), d8, map + x);
      });
}

KERNELS_END

#if HWY_ONCE
namespace {

uint32_t fourBytes(const uint8_t* p) {
  uint32_t v;
  memcpy(&v, p, sizeof v);
  return v;
}

// Makes the weak neighbours of a pixel edges, and puts them on the stack. `bottom` is the end of the stack, the return
// value its new top. Three words tell at once that there are none; they reach one byte beyond the frame, into the
// magnitudes.
uint32_t* visit(CannyMap map, ptrdiff_t at, uint32_t* top) {
  constexpr uint32_t threeWeak = cannyWeak * 0x010101u;
  uint8_t* const p = map.data + at;
  for (ptrdiff_t y = -1; y <= 1; ++y) {
    uint8_t* const row = p + y * map.pitch - 1;
    if (!(fourBytes(row) & threeWeak)) continue;
    for (ptrdiff_t x = 0; x < 3; ++x)
      if (row[x] == cannyWeak) {
        row[x] = cannyStrong;
        *top++ = (uint32_t)(row + x - map.data);
      }
  }
  return top;
}

// Eight pixels as one word, zeros beyond the row.
uint64_t eightBytes(const uint8_t* p, ptrdiff_t rest) {
  uint64_t v = 0;
  if (rest >= 8) memcpy(&v, p, sizeof v);
  else memcpy(&v, p, (size_t)rest);
  return v;
}

}  // namespace

CannySuppress ORV_VARIANT::cannySuppress() { return WIDEST(CannySuppressRow); }

// What is an edge doesn't depend on the order of visits, so strong pixels are visited where the map has them and never
// wait on the stack: it holds weak ones that became edges, each once.
void ORV_VARIANT::cannyTrace(CannyMap map, OrvSize roi, uint32_t* stack, Plane<uint8_t> dst) {
  constexpr uint64_t eightStrong = cannyStrong * 0x0101010101010101u;
  for (ptrdiff_t y = 0; y < roi.height; ++y)
    for (ptrdiff_t x = 0; x < roi.width; x += 8)
      for (uint64_t strong = eightBytes(map.row(y) + x, roi.width - x) & eightStrong; strong; strong &= strong - 1) {
        uint32_t* top = visit(map, y * map.pitch + x + __builtin_ctzll(strong) / 8, stack);
        while (top > stack) {
          const uint32_t at = *--top;
          top = visit(map, at, top);
        }
      }
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const uint8_t* const row = map.row(y);
    auto* const out = dst.row(y);
    for (ptrdiff_t x = 0; x < roi.width; ++x) out[x] = (uint8_t) - (row[x] & cannyStrong);
  }
}

#endif
