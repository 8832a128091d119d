// The points of the rings, from below the pixel through left, above and right.
#include "features/fastn_ring.h"

namespace {

constexpr RingPoint ring1[] = {{0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}};

constexpr RingPoint ring2[] = {{0, 2},  {-1, 2}, {-2, 1}, {-2, 0}, {-2, -1}, {-1, -2},
                               {0, -2}, {1, -2}, {2, -1}, {2, 0},  {2, 1},   {1, 2}};

constexpr RingPoint ring3[] = {{0, 3},  {-1, 3}, {-2, 2}, {-3, 1}, {-3, 0}, {-3, -1}, {-2, -2}, {-1, -3},
                               {0, -3}, {1, -3}, {2, -2}, {3, -1}, {3, 0},  {3, 1},   {2, 2},   {1, 3}};

constexpr RingPoint ring5[] = {{0, 5},  {-1, 5},  {-2, 5},  {-3, 4},  {-4, 3},  {-5, 2},  {-5, 1},
                               {-5, 0}, {-5, -1}, {-5, -2}, {-4, -3}, {-3, -4}, {-2, -5}, {-1, -5},
                               {0, -5}, {1, -5},  {2, -5},  {3, -4},  {4, -3},  {5, -2},  {5, -1},
                               {5, 0},  {5, 1},   {5, 2},   {4, 3},   {3, 4},   {2, 5},   {1, 5}};

constexpr RingPoint ring7[] = {{0, 7},   {-1, 7},  {-2, 7},  {-3, 6},  {-4, 6},  {-5, 5},  {-6, 4},  {-6, 3},
                               {-7, 2},  {-7, 1},  {-7, 0},  {-7, -1}, {-7, -2}, {-6, -3}, {-6, -4}, {-5, -5},
                               {-4, -6}, {-3, -6}, {-2, -7}, {-1, -7}, {0, -7},  {1, -7},  {2, -7},  {3, -6},
                               {4, -6},  {5, -5},  {6, -4},  {6, -3},  {7, -2},  {7, -1},  {7, 0},   {7, 1},
                               {7, 2},   {6, 3},   {6, 4},   {5, 5},   {4, 6},   {3, 6},   {2, 7},   {1, 7}};

// The thirteenth point is the fifteenth once more; this is meant.
constexpr RingPoint ring9[] = {{0, 9},   {-1, 9},  {-2, 9},  {-3, 9},  {-4, 8},  {-5, 8},  {-6, 7},  {-7, 6},  {-8, 5},
                               {-8, 4},  {-9, 3},  {-9, 2},  {-9, -1}, {-9, 0},  {-9, -1}, {-9, -2}, {-9, -3}, {-8, -4},
                               {-8, -5}, {-7, -6}, {-6, -7}, {-5, -8}, {-4, -8}, {-3, -9}, {-2, -9}, {-1, -9}, {0, -9},
                               {1, -9},  {2, -9},  {3, -9},  {4, -8},  {5, -8},  {6, -7},  {7, -6},  {8, -5},  {8, -4},
                               {9, -3},  {9, -2},  {9, -1},  {9, 0},   {9, 1},   {9, 2},   {9, 3},   {8, 4},   {8, 5},
                               {7, 6},   {6, 7},   {5, 8},   {4, 8},   {3, 9},   {2, 9},   {1, 9}};

template <int32_t N>
const RingPoint* tell(const RingPoint (&ring)[N], int32_t* points) {
  static_assert(N <= mostRingPoints && N % 4 == 0, "opposite points, quarters");
  *points = N;
  return ring;
}

}  // namespace

const RingPoint* ORV_VARIANT::fastNRing(int32_t radius, int32_t* points) {
  switch (radius) {
    case 1:
      return tell(ring1, points);
    case 2:
      return tell(ring2, points);
    case 3:
      return tell(ring3, points);
    case 5:
      return tell(ring5, points);
    case 7:
      return tell(ring7, points);
    case 9:
      return tell(ring9, points);
    default:
      return nullptr;
  }
}
