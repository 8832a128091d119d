// Removal of small regions of similar value.
//
// Theory of operation. Neighbours whose values are near each other belong together; the relation goes both ways, so a
// region doesn't depend on where one starts, and pixels overwritten early were in no later region. Runs of a row are
// joined with those of the row above in a forest, whose roots count their pixels (R. E. Tarjan, "Efficiency of a Good
// But Not Linear Set Union Algorithm", 1975); a second pass overwrites the pixels of small trees.
//
// Scratch. One number a pixel: of a root the negative count, of other pixels the index of one nearer to the root.
#include "core/checks.h"
#include "core/image.h"
#include "core/variant.h"
#include <math.h>

namespace {

constexpr int32_t noRegion = INT32_MIN;  // of pixels that have the value of speckles: larger than every region

struct PixelForest {
  Loose<int32_t>* node;

  int32_t root(int32_t pixel) const {
    int32_t parent = node[pixel];
    while (parent >= 0) {
      const int32_t next = node[parent];
      if (next < 0) return parent;
      node[pixel] = next;
      pixel = next;
      parent = node[pixel];
    }
    return pixel;
  }
  void join(int32_t a, int32_t b) const {
    a = root(a), b = root(b);
    if (a == b) return;
    const int32_t large = node[a] <= node[b] ? a : b, small = a ^ b ^ large;
    node[large] = node[large] + node[small];
    node[small] = large;
  }
};

bool near(float a, float b, float difference) { return fabsf(a - b) <= difference; }
bool near(int32_t a, int32_t b, int32_t difference) {
  const int32_t d = a - b;
  return (d < 0 ? -d : d) <= difference;
}

// What differences are taken in.
template <class T>
using Wide = std::conditional_t<std::is_same<T, float>::value, float, int32_t>;

// Joins the pixels of row y with each other and with the row above.
template <class T>
void joinRow(Plane<T> image, ptrdiff_t y, int32_t width, T speckle, Wide<T> difference, const PixelForest& forest) {
  const Loose<T>* const row = image.row(y);
  const Loose<T>* const above = y > 0 ? image.row(y - 1) : nullptr;
  const int32_t first = (int32_t)y * width;
  for (int32_t x = 0; x < width;) {
    T value = row[x];
    if (value == speckle) {
      forest.node[first + x++] = noRegion;
      continue;
    }
    const int32_t start = x, head = first + x;
    for (++x; x < width; ++x) {
      const T next = row[x];
      if (next == speckle || !near((Wide<T>)next, (Wide<T>)value, difference)) break;
      forest.node[first + x] = head;
      value = next;
    }
    forest.node[head] = start - x;
    if (above == nullptr) continue;
    int32_t joined = -1;  // the parent of the pixel above that was joined last: often the same one again
    for (int32_t i = start; i < x; ++i) {
      const T upper = above[i];
      if (upper == speckle || !near((Wide<T>)(T)row[i], (Wide<T>)upper, difference)) continue;
      const int32_t parent = forest.node[first - width + i];
      if (parent >= 0 && parent == joined) continue;
      joined = parent;
      forest.join(first - width + i, head);
    }
  }
}

template <class T>
OrvStatus markSpeckles(T* srcDst, int32_t step, OrvSize size, T speckle, int32_t maxSize, T difference, int32_t norm,
                       uint8_t* buffer, bool stepChecked) {
  ORV_REQUIRE(allSet(srcDst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(size), orvStatusSize);
  ORV_REQUIRE(!stepChecked || step >= rowBytes<T>(size.width), orvStatusStep);
  ORV_REQUIRE(!stepChecked || stepsAligned<T>(step), orvStatusStepAlign);
  ORV_REQUIRE(norm == 1, orvStatusNorm);
  ORV_REQUIRE(maxSize >= 1, orvStatusOk);  // no region is as small
  const Plane<T> image = {srcDst, step};
  const PixelForest forest = {loose((int32_t*)(void*)buffer)};
  for (ptrdiff_t y = 0; y < size.height; ++y) joinRow(image, y, size.width, speckle, (Wide<T>)difference, forest);

  for (ptrdiff_t y = 0; y < size.height; ++y) {
    Loose<T>* const row = image.row(y);
    const int32_t first = (int32_t)y * size.width;
    int32_t known = -1;  // a parent whose region has been looked up
    bool smallRegion = false;
    for (int32_t x = 0; x < size.width; ++x) {
      const int32_t parent = forest.node[first + x];
      if (parent < 0) {
        if (parent >= -maxSize) row[x] = speckle;
        continue;
      }
      if (parent != known) {
        known = parent;
        smallRegion = forest.node[forest.root(parent)] >= -maxSize;
      }
      if (smallRegion) row[x] = speckle;
    }
  }
  return orvStatusOk;
}

}  // namespace

OrvStatus orviMarkSpecklesGetBufferSize(OrvSize roiSize, OrvDataType dataType, int32_t channels, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(dataType == orvData8u || dataType == orvData16u || dataType == orvData16s || dataType == orvData32f,
              orvStatusDataType);
  ORV_REQUIRE(channels == 1, orvStatusChannels);
  *bufferSize = wrapMul(13, roiSize.width, roiSize.height);
  return orvStatusOk;
}

OrvStatus orviMarkSpeckles_8u_C1IR(uint8_t* srcDst, int32_t step, OrvSize roiSize, uint8_t speckleValue,
                                   int32_t maxSpeckleSize, uint8_t maxPixelDiff, int32_t norm, uint8_t* buffer) {
  return markSpeckles(srcDst, step, roiSize, speckleValue, maxSpeckleSize, maxPixelDiff, norm, buffer, false);
}
OrvStatus orviMarkSpeckles_16u_C1IR(uint16_t* srcDst, int32_t step, OrvSize roiSize, uint16_t speckleValue,
                                    int32_t maxSpeckleSize, uint16_t maxPixelDiff, int32_t norm, uint8_t* buffer) {
  return markSpeckles(srcDst, step, roiSize, speckleValue, maxSpeckleSize, maxPixelDiff, norm, buffer, true);
}
OrvStatus orviMarkSpeckles_16s_C1IR(int16_t* srcDst, int32_t step, OrvSize roiSize, int16_t speckleValue,
                                    int32_t maxSpeckleSize, int16_t maxPixelDiff, int32_t norm, uint8_t* buffer) {
  return markSpeckles(srcDst, step, roiSize, speckleValue, maxSpeckleSize, maxPixelDiff, norm, buffer, true);
}
OrvStatus orviMarkSpeckles_32f_C1IR(float* srcDst, int32_t step, OrvSize roiSize, float speckleValue,
                                    int32_t maxSpeckleSize, float maxPixelDiff, int32_t norm, uint8_t* buffer) {
  return markSpeckles(srcDst, step, roiSize, speckleValue, maxSpeckleSize, maxPixelDiff, norm, buffer, true);
}
