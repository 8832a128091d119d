// The state of inpainting.
// One body serves both variants.
#include <string.h>
#include "core/checks.h"
#include "core/primitives.h"
#include "core/scratch.h"
#include "core/orvcore_contract.h"
#include "distance/dilate_square.h"
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
    int64_t count = 0;
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

void fillDistGrad(OrvInpaintState* s) {
  for (ptrdiff_t y = 0; y < s->boxSize.height; ++y)
    for (ptrdiff_t x = 0; x < s->boxSize.width; ++x) {
      if (!s->maskBox[y * s->maskStride + x]) continue;
      const float* const p = s->dist + y * s->distStride + x;
      int16_t* const grad = s->distGrad + 2 * (y * s->gradStride + x);
      grad[0] = slope(p, 1, x > 0, x + 1 < s->boxSize.width);
      grad[1] = slope(p, s->distStride, y > 0, y + 1 < s->boxSize.height);
    }
}

// All pixels of positive distance, as many as the mask has, by distance, then by place.
OrvStatus fillOrder(OrvInpaintState* s) {
  int32_t n = 0;
  for (int32_t y = 0; y < s->boxSize.height; ++y)
    for (int32_t x = 0; x < s->boxSize.width && n < s->count; ++x) {
      const float d = s->dist[(ptrdiff_t)y * s->distStride + x];
      if (!(d > 0)) continue;
      uint64_t bits = __builtin_bit_cast(uint64_t, (double)d);
      bits = (bits >> inpaintIndexBits << inpaintIndexBits) | (uint64_t)(y * s->boxSize.width + x);
      s->order[n++] = __builtin_bit_cast(double, bits);
    }
  s->orderCount = n;
  return n > 0 ? orvsSortAscend_64f_I(s->order, n) : orvStatusOk;
}

void fillRing(OrvInpaintState* s, const uint8_t* dilated) {
  uint32_t* next = s->ring;
  for (int32_t y = 0; y < s->boxSize.height; ++y)
    for (int32_t x = 0; x < s->boxSize.width; ++x) {
      const ptrdiff_t i = (ptrdiff_t)y * s->maskStride + x;
      if (dilated[i] && !s->maskBox[i]) *next++ = (uint32_t)(y * s->boxSize.width + x);
    }
}

// Fills the box, its neighbours, the order and the ring; the state is zero behind its told numbers.
OrvStatus fillState(OrvInpaintState* s, const Arguments& a, const uint8_t* dilated, const uint8_t* box) {
  for (ptrdiff_t y = 0; y < s->boxSize.height; ++y) {
    const ptrdiff_t row = y * s->maskStride;
    memcpy(s->maskBox + row, box + row, (size_t)s->boxSize.width);
    memcpy(s->dist + y * s->distStride, raw(a.dist.row(s->boxY + y)) + s->boxX,
           (size_t)s->boxSize.width * sizeof(float));
  }
  memcpy(s->work, s->maskBox, (size_t)s->maskStride * (size_t)s->boxSize.height);
  fillNeighbours(s, a.radius);
  if (s->method == 0) fillDistGrad(s);
  fillRing(s, dilated);
  return fillOrder(s);
}

// Carves the block of a state; the bytes it takes. Without memory (null) it only counts them.
int64_t layOut(OrvInpaintState* s, uint8_t* memory, int channels) {
  int64_t bytes = 0;
  const auto take = [&](auto*& piece, int64_t count) {
    if (memory) piece = (std::remove_reference_t<decltype(piece)>)(void*)(memory + bytes);
    bytes += (count * (int64_t)sizeof(*piece) + 63) & ~63;
  };
  const int64_t rows = s->boxSize.height;
  OrvInpaintState* record;
  take(record, 1);
  take(s->maskBox, rows * s->maskStride);
  take(s->work, rows * s->maskStride);
  take(s->imageGrad, rows * s->gradStride * 2 * channels);
  take(s->distGrad, s->method == 0 ? rows * s->gradStride * 2 : 0);
  take(s->dist, rows * s->distStride);
  take(s->order, s->count);
  take(s->ring, s->ringCount);
  take(s->neighbours, s->neighbourCount);
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

// Makes the state of a plan in one block.
OrvStatus allocateState(OrvInpaintState** state, OrvInpaintState plan, const Arguments& a, const uint8_t* dilated,
                        const uint8_t* box) {
  const int64_t bytes = layOut(&plan, nullptr, a.channels);
  ORV_REQUIRE(bytes <= INT32_MAX, orvStatusNoMem);
  uint8_t* const memory = (uint8_t*)orvMalloc((int32_t)bytes);
  ORV_REQUIRE(memory, orvStatusNoMem);
  memset(memory, 0, (size_t)bytes);
  layOut(&plan, memory, a.channels);
  auto* const made = (OrvInpaintState*)(void*)memory;
  *made = plan;
  const OrvStatus status = plan.count > 0 ? fillState(made, a, dilated, box) : orvStatusOk;
  if (status == orvStatusOk) *state = made;
  else orvFree(memory);
  return status;
}

// The body of all InitAlloc forms. The ring must be counted before the block is made: that takes the mask's box and its
// dilation in memory of their own.
OrvStatus initialise(OrvInpaintState** state, const Arguments& a) {
  ORV_REQUIRE(allSet(a.mask.data, a.dist.data, state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(a.roi), orvStatusSize);
  ORV_REQUIRE(a.mask.step >= a.roi.width && a.dist.step >= rowBytes<float>(a.roi.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<float>(a.dist.step), orvStatusStepAlign);
  ORV_REQUIRE(a.method == 0 || a.method == 1, orvStatusBadArg);
  ORV_REQUIRE(a.radius >= 1, orvStatusBadArg);

  const Hole hole = findHole(a);
  if (hole.count == 0) return allocateState(state, planState(a, hole), a, nullptr, nullptr);
  ORV_REQUIRE(a.radius < mostRadius, orvStatusNoMem);
  OrvInpaintState plan = planState(a, hole);
  const int64_t area = (int64_t)plan.maskStride * plan.boxSize.height, since = (int64_t)plan.boxSize.width * 4;
  ORV_REQUIRE(area < (int64_t)1 << inpaintIndexBits, orvStatusNoMem);
  uint8_t* const memory = orvsMalloc_8u((int32_t)(2 * area + since + 64));
  ORV_REQUIRE(memory, orvStatusNoMem);

  Scratch scratch{memory};
  int32_t* const counters = scratch.take<int32_t>(plan.boxSize.width, 64);
  uint8_t* const box = scratch.take<uint8_t>((ptrdiff_t)area, 1);
  uint8_t* const dilated = scratch.take<uint8_t>((ptrdiff_t)area, 1);
  orviThreshold_GTVal_8u_C1R(raw(a.mask.row(plan.boxY)) + plan.boxX, a.mask.step, box, plan.maskStride, plan.boxSize, 0,
                             255);
  dilateSquare(box, dilated, plan.maskStride, plan.boxSize, plan.reach, counters);
  int64_t within = 0;
  for (ptrdiff_t y = 0; y < plan.boxSize.height; ++y)
    for (ptrdiff_t x = 0; x < plan.boxSize.width; ++x) within += dilated[y * plan.maskStride + x] != 0;
  plan.ringCount = (int32_t)(within - hole.count);
  const OrvStatus status = allocateState(state, plan, a, dilated, box);
  orvsFree(memory);
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
