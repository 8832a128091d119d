// Boundaries between the segments of a label image.
//
// Limitation. A pixel that has become a boundary stops comparing, so each row depends on the finished row above, and
// each pixel on its left neighbour. The drawing stays on the calling thread: bands would draw other lines at their
// seams.
//
// One body serves both variants.
#include "segment/boundaries.h"
#include "core/checks.h"
#include "core/image.h"

namespace {

// Marks the pixels of a row that differ from the row above or from their left neighbour.
template <class T, bool Corners>
void boundRow(const Loose<T>* above, Loose<T>* row, ptrdiff_t width, T border) {
  const auto differs = [=](T neighbour, T pixel) { return (neighbour != border) & (neighbour != pixel); };
  T left = border, aboveLeft = border, aboveHere = above[0];
  for (ptrdiff_t x = 0; x < width; ++x) {
    const T pixel = row[x], aboveRight = x + 1 < width ? (T)above[x + 1] : border;
    bool marked = differs(aboveHere, pixel) | differs(left, pixel);
    if (Corners) marked |= differs(aboveLeft, pixel) | differs(aboveRight, pixel);
    left = marked ? border : pixel;
    row[x] = left;
    aboveLeft = aboveHere, aboveHere = aboveRight;
  }
}

template <class T>
OrvStatus boundSegments(T* markers, int32_t step, OrvSize size, T border, int32_t norm) {
  ORV_REQUIRE(markers != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(size), orvStatusSize);
  ORV_REQUIRE(step >= rowBytes<T>(size.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(step), orvStatusStepAlign);
  ORV_REQUIRE(norm == 0 || norm == 1, orvStatusBadArg);
  const Plane<T> image = {markers, step};
  // The first row is compared along itself alone: of two rows that are the same, only left neighbours differ first.
  Loose<T>* const top = image.row(0);
  for (ptrdiff_t x = 1; x < size.width; ++x)
    if (top[x - 1] != border && top[x - 1] != top[x]) top[x] = border;
  const auto bound = norm == 0 ? boundRow<T, true> : boundRow<T, false>;
  for (ptrdiff_t y = 1; y < size.height; ++y) bound(image.row(y - 1), image.row(y), size.width, border);
  return orvStatusOk;
}

// The same with priorities.
template <class T>
void boundByPriority(Plane<T> image, Plane<const int32_t> priority, OrvSize size, T border, bool corners) {
  const ptrdiff_t width = size.width;
  for (ptrdiff_t y = 0; y < size.height; ++y) {
    Loose<T>* const row = image.row(y);
    const Loose<const int32_t>* const rank = priority.row(y);
    Loose<T>* const above = y > 0 ? image.row(y - 1) : nullptr;
    const Loose<const int32_t>* const rankAbove = y > 0 ? priority.row(y - 1) : nullptr;
    const auto differ = [=](T a, T b) { return a != b && a != border && b != border; };
    for (ptrdiff_t x = 0; x < width; ++x) {
      if (above != nullptr && differ(above[x], row[x])) {
        if (rankAbove[x] <= rank[x]) row[x] = border;
        else above[x] = border;
      }
      if (x + 1 < width && differ(row[x], row[x + 1])) {
        if (rank[x] <= rank[x + 1]) row[x + 1] = border;
        else row[x] = border;
      }
    }
    if (!corners || above == nullptr) continue;
    for (ptrdiff_t x = 0; x < width; ++x)
      for (ptrdiff_t k = x - 1; k <= x + 1; k += 2)
        if (k >= 0 && k < width && differ(above[k], row[x])) {
          if (rankAbove[k] > rank[x]) above[k] = border;
          else row[x] = border;
        }
  }
}

}  // namespace

OrvStatus orviBoundSegments_8u_C1IR(uint8_t* markers, int32_t markerStep, OrvSize roiSize, uint8_t borderValue,
                                    int32_t norm) {
  return boundSegments(markers, markerStep, roiSize, borderValue, norm);
}
OrvStatus orviBoundSegments_16u_C1IR(uint16_t* markers, int32_t markerStep, OrvSize roiSize, uint16_t borderValue,
                                     int32_t norm) {
  return boundSegments(markers, markerStep, roiSize, borderValue, norm);
}

void ownBoundSegments_8u(uint8_t* markers, int32_t markerStep, const int32_t* priority, int32_t priorityStep,
                         OrvSize roiSize, uint8_t border, int32_t fourConnected) {
  boundByPriority<uint8_t>({markers, markerStep}, {priority, priorityStep}, roiSize, border, fourConnected == 0);
}
void ownBoundSegments_16u(uint16_t* markers, int32_t markerStep, const int32_t* priority, int32_t priorityStep,
                          OrvSize roiSize, uint16_t border, int32_t fourConnected) {
  boundByPriority<uint16_t>({markers, markerStep}, {priority, priorityStep}, roiSize, border, fourConnected == 0);
}
