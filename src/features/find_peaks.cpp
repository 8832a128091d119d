// Local extrema of a response image, listed in scan order.
//
// A row is tested by whole vectors, which leave a byte a pixel; the list is made from the bytes that are set. Where no
// pixel of a vector is beyond the threshold, its neighbours are not even loaded.
// One body serves both variants.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/find_peaks.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

// |v| above the threshold. The magnitude of -2^31 is no 32-bit number, so integers are compared on either side.
template <class D>
HWY_INLINE auto Strong(D d, hn::VFromD<D> v, float threshold) {
  return hn::Gt(hn::Abs(v), hn::Set(d, threshold));
}
template <class D>
HWY_INLINE auto Strong(D d, hn::VFromD<D> v, int32_t threshold) {
  const int32_t limit = HWY_MAX(threshold, -1);  // below 0 all are strong
  return hn::Or(hn::Gt(v, hn::Set(d, limit)), hn::Lt(v, hn::Set(d, -limit)));
}

// Floats within the smallest normal number count as equal; an infinity equals nothing, as its distance is no number.
template <class D>
HWY_INLINE auto Alike(D d, hn::VFromD<D> v, hn::VFromD<D> extremum) {
  if constexpr (hwy::IsFloat<hn::TFromD<D>>()) return hn::Le(hn::Abs(hn::Sub(v, extremum)), hn::Set(d, 1.1754944e-38f));
  else return hn::Eq(v, extremum);
}

// flags[x] is not 0 if row[x] is an extremum of its eight or four neighbours, for 0 <= x < n.
template <class T>
void MarkPeaks(const T* above, const T* row, const T* below, ptrdiff_t n, T threshold, bool four, uint8_t* flags) {
  Vectors<T>(
      0, n, VECTOR(d, x) {
        const hn::RebindToSigned<decltype(d)> di;
        const hn::Rebind<uint8_t, decltype(d)> d8;
        const auto v = hn::LoadU(d, row + x);
        const auto strong = Strong(d, v, threshold);
        if (hn::AllFalse(d, strong)) {
          hn::StoreU(hn::Zero(d8), d8, flags + x);
          return;
        }
        auto largest = v, smallest = v;
        const auto take = [&](const T* p) __attribute__((always_inline)) {
          const auto other = hn::LoadU(d, p + x);
          largest = hn::Max(largest, other), smallest = hn::Min(smallest, other);
        };
        take(row - 1), take(row + 1), take(above), take(below);
        if (!four) take(above - 1), take(above + 1), take(below - 1), take(below + 1);
        const auto positive = hn::Gt(v, hn::Zero(d));
        const auto peak = hn::And(strong, Alike(d, v, hn::IfThenElse(positive, largest, smallest)));
        const auto flag = hn::IfThenElseZero(hn::RebindMask(di, peak), hn::Set(di, 1));
        hn::StoreU(hn::DemoteTo(d8, flag), d8, flags + x);
      });
}

KERNELS_END

#if HWY_ONCE
namespace {

constexpr int32_t eightNeighbours = 0, fourNeighbours = 1;

OrvStatus reportPeakBuffer(int32_t width, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(width >= 1, orvStatusSize);
  *bufferSize = wrapAdd(wrapMul(wrapAdd(width, 5) >> 2, 128), 32);
  return orvStatusOk;
}

template <class T, class Mark>
OrvStatus findPeaks(Mark mark, Plane<const T> src, OrvSize roi, T threshold, OrvPoint* peak, int32_t maxPeakCount,
                    int32_t* peakCount, int32_t norm, int32_t border, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src.data, peak, peakCount, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi) && maxPeakCount >= 1 && border >= 1, orvStatusSize);
  ORV_REQUIRE((float)border <= (float)roi.width * 0.5f && (float)border <= (float)roi.height * 0.5f, orvStatusSize);
  ORV_REQUIRE(src.step / (int32_t)sizeof(T) >= roi.width, orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(src.step), orvStatusStepAlign);
  ORV_REQUIRE(norm == eightNeighbours || norm == fourNeighbours, orvStatusBadArg);
  int32_t count = 0;
  *peakCount = 0;
  const ptrdiff_t inside = (ptrdiff_t)roi.width - 2 * (ptrdiff_t)border;
  for (int32_t y = border; y < roi.height - border && inside > 0; ++y) {
    const auto row = [&](ptrdiff_t at) { return raw(src.row(at)) + border; };
    mark(row((ptrdiff_t)y - 1), row(y), row((ptrdiff_t)y + 1), inside, threshold, norm == fourNeighbours, buffer);
    memset(buffer + inside, 0, 8);
    for (ptrdiff_t x = 0; x < inside; x += 8) {
      uint64_t eight;
      memcpy(&eight, buffer + x, sizeof eight);
      for (; eight; eight &= eight - 1) {
        peak[count] = {border + (int32_t)x + __builtin_ctzll(eight) / 8, y};
        *peakCount = ++count;
        if (count == maxPeakCount) return orvStatusOk;
      }
    }
  }
  return orvStatusOk;
}

}  // namespace

OrvStatus orviFindPeaks3x3GetBufferSize_32f_C1R(int32_t width, int32_t* bufferSize) {
  return reportPeakBuffer(width, bufferSize);
}
OrvStatus orviFindPeaks3x3GetBufferSize_32s_C1R(int32_t width, int32_t* bufferSize) {
  return reportPeakBuffer(width, bufferSize);
}

OrvStatus orviFindPeaks3x3_32f_C1R(const float* src, int32_t srcStep, OrvSize roiSize, float threshold, OrvPoint* peak,
                                   int32_t maxPeakCount, int32_t* peakCount, int32_t norm, int32_t border,
                                   uint8_t* buffer) {
  return findPeaks<float>(WIDEST(MarkPeaks<float>), {src, srcStep}, roiSize, threshold, peak, maxPeakCount, peakCount,
                          norm, border, buffer);
}
OrvStatus orviFindPeaks3x3_32s_C1R(const int32_t* src, int32_t srcStep, OrvSize roiSize, int32_t threshold,
                                   OrvPoint* peak, int32_t maxPeakCount, int32_t* peakCount, int32_t norm,
                                   int32_t border, uint8_t* buffer) {
  return findPeaks<int32_t>(WIDEST(MarkPeaks<int32_t>), {src, srcStep}, roiSize, threshold, peak, maxPeakCount,
                            peakCount, norm, border, buffer);
}

#endif
