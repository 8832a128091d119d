// The two engines of the watershed. No checks; `markers` grows in place.
#pragma once
#include "segment/names.h"
#include "core/image.h"

namespace ORV_VARIANT {

enum WatershedFlags { watershedQueue = 1, watershedSweep = 2, watershedBorder4 = 64, watershedBorder8 = 128 };
enum WatershedNorm { normInf, normL1, normL2, normFastMarching };

template <class T>
struct WatershedJob {
  Plane<const uint8_t> src;
  Plane<T> markers;
  OrvSize size;
  int32_t norm, flags;
  uint8_t* buffer;
};

// The label that marks lines; labels of segments are smaller.
template <class T>
constexpr T watershedLine = (T) ~(T)0;

}  // namespace ORV_VARIANT

extern "C" {
void ownSegmentWaterhedPQ_8u(const ORV_VARIANT::WatershedJob<uint8_t>* job);
void ownSegmentWaterhedPQ_16u(const ORV_VARIANT::WatershedJob<uint16_t>* job);
void ownSegmentWatershedSweep_8u(const ORV_VARIANT::WatershedJob<uint8_t>* job);
void ownSegmentWatershedSweep_16u(const ORV_VARIANT::WatershedJob<uint16_t>* job);
}
