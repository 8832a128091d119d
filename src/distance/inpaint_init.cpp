// The state of inpainting.
// One body serves both variants.
#include <string.h>
#include "core/checks.h"
#include "core/primitives.h"
#include "core/scratch.h"
#include "core/orvcore_contract.h"
#include "distance/flag_scan.h"
#include "distance/inpaint_state.h"

namespace {

// Radii beyond have more neighbours than a block of memory can hold.
constexpr float mostRadius = 16384.f;

struct Arguments {
  Plane<const float> dist;
  Plane<const uint8_t> mask;
  OrvSize roi;
  int32_t method;
  float radius;
  int channels;
};

// The mask's pixels, and the box around them.
struct Hole {
  int64_t count = 0;
  int32_t left = INT32_MAX, top = INT32_MAX, right = -1, bottom = -1;  // both ends inside
};

Hole findHole(const Arguments& a) {
  Hole hole;
  for (int32_t y = 0; y < a.roi.height; ++y) {
    const auto* const mask = a.mask.row(y);
    int32_t count = 0;
    for (ptrdiff_t x = 0; x < a.roi.width; ++x) count += mask[x] != 0;
    if (count == 0) continue;
    int32_t first = 0, last = a.roi.width - 1;
    while (!mask[first]) ++first;
    while (!mask[last]) --last;
    hole.left = first < hole.left ? first : hole.left;
    hole.right = last > hole.right ? last : hole.right;
    if (hole.count == 0) hole.top = y;
    hole.bottom = y;
    hole.count += count;
  }
  return hole;
}

// Calls visit(dx, dy, d²) for the neighbours within the radius, in their order.
template <class Visit>
void forEachNeighbour(float radius, const Visit& visit) {
  const int32_t reach = (int32_t)radius;
  for (int32_t dy = -reach; dy <= reach; ++dy)
    for (int32_t dx = -reach; dx <= reach; ++dx)
      if ((dx || dy) && (float)(dx * dx + dy * dy) <= radius * radius) visit(dx, dy, (float)(dx * dx + dy * dy));
}

// The weight of a neighbour by its distance: method 0 falls with its cube, method 1 with its fifth power.
float weightOf(int32_t method, float square) {
  const float root = __builtin_sqrtf(square), inverse = 1 / root;
  return method == 0 ? inverse * inverse * inverse : 1 / ((square * square + 1) * root);
}

int32_t rounded(int32_t elements, int32_t bytes) {
  const int32_t line = 64 / bytes;
  return (elements + line - 1) / line * line;
}

void fillNeighbours(OrvInpaintState* s, float radius) {
  InpaintNeighbour* next = s->neighbours;
  forEachNeighbour(radius, [&](int32_t dx, int32_t dy, float square) {
    *next++ = {-dx,
               -dy,
               weightOf(s->method, square),
               dy * s->maskStride + dx,
               dy * s->distStride + dx,
               dy * s->gradStride + dx,
               0};
  });
}

// The slope of the distance map in steps of 1/4096, along one direction with `before` and `after` pixels beside this.
int16_t slope(const float* p, ptrdiff_t pitch, bool before, bool after) {
  const float difference = (after ? p[pitch] : p[0]) - (before ? p[-pitch] : p[0]);
  const float scaled = difference * (before && after ? 2048.f : 4096.f);
  return scaled >= 32767.f ? (int16_t)32767 : scaled <= -32768.f ? (int16_t)-32768 : (int16_t)scaled;
}

// All pixels of positive distance, as many as the mask has, by distance, then by place. Pixels at a distance of 0 are
// passed over in blocks.
OrvStatus fillOrder(OrvInpaintState* s) {
  constexpr int32_t block = 16;
  const int32_t width = s->boxSize.width;
  int32_t n = 0;
  for (int32_t y = 0; y < s->boxSize.height; ++y) {
    const float* const dist = s->dist + (ptrdiff_t)y * s->distStride;
    for (int32_t x = 0; x < width; x += block) {
      int32_t any = 0;  // rows end with a whole block; what lies behind them is 0
      for (ptrdiff_t i = 0; i < block; ++i) any |= dist[x + i] > 0;
      for (int32_t i = x; any && i < x + block && n < s->count; ++i) {
        if (!(dist[i] > 0)) continue;
        uint64_t bits = __builtin_bit_cast(uint64_t, (double)dist[i]);
        bits = (bits >> inpaintIndexBits << inpaintIndexBits) | (uint64_t)(y * width + i);
        s->order[n++] = __builtin_bit_cast(double, bits);
        s->stray |= !s->maskBox[(ptrdiff_t)y * s->maskStride + i];
      }
    }
  }
  s->orderCount = n;
  return n > 0 ? orvsSortAscend_64f_I(s->order, n) : orvStatusOk;
}

// The map's slope at the pixels to fill; none outside the mask.
void fillDistGrad(OrvInpaintState* s) {
  for (ptrdiff_t i = 0; i < s->orderCount; ++i) {
    const OrvPoint at = inpaintPixel(s, i);
    if (!s->maskBox[(ptrdiff_t)at.y * s->maskStride + at.x]) continue;
    const float* const p = s->dist + (ptrdiff_t)at.y * s->distStride + at.x;
    s->distGrad[2 * i] = slope(p, 1, at.x > 0, at.x + 1 < s->boxSize.width);
    s->distGrad[2 * i + 1] = slope(p, s->distStride, at.y > 0, at.y + 1 < s->boxSize.height);
  }
}

// Sets ring to 255 within `reach` rows and columns of the mask, but on the mask itself to 0; returns how many that are.
// `line` has room for a row.
int32_t markRing(const OrvInpaintState& s, Plane<const uint8_t> mask, uint8_t* ring, uint8_t* line) {
  const ptrdiff_t width = s.boxSize.width, height = s.boxSize.height, reach = s.reach;
  memset(ring, 0, (size_t)(s.maskStride * height));
  for (ptrdiff_t y = 0; y < height; ++y) {
    const uint8_t* const m = raw(mask.row(s.boxY + y)) + s.boxX;
    ptrdiff_t x = nextWith(255, m, 0, width);
    if (x == width) continue;
    memset(line, 0, (size_t)width);
    while (x < width) {
      ptrdiff_t end = x;
      while (end < width && m[end]) ++end;
      const ptrdiff_t first = x > reach ? x - reach : 0, last = end + reach < width ? end + reach : width;
      memset(line + first, 255, (size_t)(last - first));
      x = nextWith(255, m, end, width);
    }
    const ptrdiff_t top = y > reach ? y - reach : 0, bottom = y + reach < height ? y + reach : height - 1;
    for (ptrdiff_t row = top; row <= bottom; ++row)
      for (ptrdiff_t i = 0; i < width; ++i) ring[row * s.maskStride + i] |= line[i];
  }
  int32_t count = 0;
  for (ptrdiff_t y = 0; y < height; ++y) {
    const auto* const m = mask.row(s.boxY + y) + s.boxX;
    uint8_t* const r = ring + y * s.maskStride;
    for (ptrdiff_t x = 0; x < width; ++x) r[x] = m[x] ? 0 : r[x], count += r[x] != 0;
  }
  return count;
}

void listRing(OrvInpaintState* s, const uint8_t* ring) {
  uint32_t* next = s->ring;
  const ptrdiff_t width = s->boxSize.width;
  for (ptrdiff_t y = 0; y < s->boxSize.height; ++y, ring += s->maskStride)
    for (ptrdiff_t x = 0; (x = nextWith(255, ring, x, width)) < width; ++x) *next++ = (uint32_t)(y * width + x);
}

// Fills the box, its neighbours, the order and the ring.
OrvStatus fillState(OrvInpaintState* s, const Arguments& a, const uint8_t* ring) {
  const ptrdiff_t width = s->boxSize.width;
  for (ptrdiff_t y = 0; y < s->boxSize.height; ++y) {
    float* const dist = s->dist + y * s->distStride;
    memcpy(dist, raw(a.dist.row(s->boxY + y)) + s->boxX, (size_t)width * sizeof(float));
    for (ptrdiff_t x = width; x < s->distStride; ++x) dist[x] = 0;
  }
  orviThreshold_GTVal_8u_C1R(raw(a.mask.row(s->boxY)) + s->boxX, a.mask.step, s->maskBox, s->maskStride, s->boxSize, 0,
                             255);
  orviCopy_8u_C1R(s->maskBox, s->maskStride, s->work, s->maskStride, s->boxSize);
  fillNeighbours(s, a.radius);
  listRing(s, ring);
  const OrvStatus status = fillOrder(s);
  if (status == orvStatusOk && s->method == 0) fillDistGrad(s);
  return status;
}

// Carves the block of a state; returns the bytes it takes. Without memory (null) it only counts them.
int64_t layOut(OrvInpaintState* s, uint8_t* memory, int channels) {
  int64_t bytes = (sizeof(OrvInpaintState) + 63) & ~63;
  const auto take = [&](auto*& piece, int64_t count) {
    if (memory) piece = (std::remove_reference_t<decltype(piece)>)(void*)(memory + bytes);
    bytes += (count * (int64_t)sizeof(*piece) + 63) & ~63;
  };
  const int64_t rows = s->boxSize.height;
  take(s->maskBox, rows * s->maskStride);
  take(s->work, rows * s->maskStride);
  take(s->dist, rows * s->distStride);
  take(s->order, s->count);
  take(s->distGrad, s->method == 0 ? (int64_t)s->count * 2 : 0);
  take(s->ring, s->ringCount);
  take(s->neighbours, s->neighbourCount);
  take(s->imageGrad, rows * s->gradStride * 2 * channels);
  return bytes;
}

// A state with all numbers set, and no memory.
OrvInpaintState planState(const Arguments& a, const Hole& hole) {
  OrvInpaintState s{};
  s.maxRoi = a.roi;
  s.method = a.method;
  s.count = (int32_t)hole.count;
  if (hole.count == 0) return s;
  s.reach = (int32_t)a.radius;
  const int32_t margin = s.reach + 1;
  const auto clipped = [](int32_t value, int32_t most) { return value < 0 ? 0 : value > most ? most : value; };
  s.boxX = clipped(hole.left - margin, hole.left);
  s.boxY = clipped(hole.top - margin, hole.top);
  s.boxSize.width = clipped(wrapAdd(hole.right, margin), a.roi.width - 1) - s.boxX + 1;
  s.boxSize.height = clipped(wrapAdd(hole.bottom, margin), a.roi.height - 1) - s.boxY + 1;
  s.maskStride = rounded(s.boxSize.width, 1);
  s.distStride = s.gradStride = rounded(s.boxSize.width, 4);
  forEachNeighbour(a.radius, [&](int32_t, int32_t, float) { ++s.neighbourCount; });
  return s;
}

// Makes the state of a plan in one block. Pages of gradients that no run needs are never touched.
OrvStatus allocateState(OrvInpaintState** state, OrvInpaintState plan, const Arguments& a, const uint8_t* ring) {
  const int64_t bytes = layOut(&plan, nullptr, a.channels);
  ORV_REQUIRE(bytes <= INT32_MAX, orvStatusNoMem);
  uint8_t* const memory = (uint8_t*)orvMalloc((int32_t)bytes);
  ORV_REQUIRE(memory, orvStatusNoMem);
  layOut(&plan, memory, a.channels);
  if (plan.method == 0) memset(plan.distGrad, 0, (size_t)plan.count * 4);
  auto* const made = (OrvInpaintState*)(void*)memory;
  *made = plan;
  const OrvStatus status = plan.count > 0 ? fillState(made, a, ring) : orvStatusOk;
  if (status == orvStatusOk) *state = made;
  else orvFree(memory);
  return status;
}

// The body of all InitAlloc forms. The ring must be counted before the block is made, in memory of its own.
OrvStatus initialise(OrvInpaintState** state, const Arguments& a) {
  ORV_REQUIRE(allSet(a.mask.data, a.dist.data, state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(a.roi), orvStatusSize);
  ORV_REQUIRE(a.mask.step >= a.roi.width && a.dist.step >= rowBytes<float>(a.roi.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<float>(a.dist.step), orvStatusStepAlign);
  ORV_REQUIRE(a.method == 0 || a.method == 1, orvStatusBadArg);
  ORV_REQUIRE(a.radius >= 1, orvStatusBadArg);

  const Hole hole = findHole(a);
  if (hole.count == 0) return allocateState(state, planState(a, hole), a, nullptr);
  ORV_REQUIRE(a.radius < mostRadius, orvStatusNoMem);
  OrvInpaintState plan = planState(a, hole);
  const int64_t area = (int64_t)plan.maskStride * plan.boxSize.height;
  ORV_REQUIRE(area < (int64_t)1 << inpaintIndexBits, orvStatusNoMem);
  uint8_t* const ring = orvsMalloc_8u((int32_t)area + plan.maskStride);
  ORV_REQUIRE(ring, orvStatusNoMem);
  plan.ringCount = markRing(plan, a.mask, ring, ring + area);
  const OrvStatus status = allocateState(state, plan, a, ring);
  orvsFree(ring);
  return status;
}

OrvStatus release(OrvInpaintState* state) {
  ORV_REQUIRE(state, orvStatusNullPtr);
  orvFree(state);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviInpaintInitAlloc_8u_C1R(OrvInpaintState** state, const float* dist, int32_t distStep, const uint8_t* mask,
                                      int32_t maskStep, OrvSize roiSize, int32_t method, float radius) {
  return initialise(state, {{dist, distStep}, {mask, maskStep}, roiSize, method, radius, 1});
}
OrvStatus orviInpaintInitAlloc_8u_C3R(OrvInpaintState** state, const float* dist, int32_t distStep, const uint8_t* mask,
                                      int32_t maskStep, OrvSize roiSize, int32_t method, float radius) {
  return initialise(state, {{dist, distStep}, {mask, maskStep}, roiSize, method, radius, 3});
}
OrvStatus orviInpaintFree_8u_C1R(OrvInpaintState* state) { return release(state); }
OrvStatus orviInpaintFree_8u_C3R(OrvInpaintState* state) { return release(state); }
