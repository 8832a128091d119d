// Watershed segmentation: checks, sizes, choice of the engine.
// One body serves both variants.
#include "segment/watershed.h"
#include "core/checks.h"

namespace {

// What the sweeps and what the queues need, the larger.
template <class T>
OrvStatus reportBytes(OrvSize size, int32_t* bytes) {
  ORV_REQUIRE(bytes != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(size), orvStatusSize);
  const uint32_t w = (uint32_t)size.width, h = (uint32_t)size.height, element = sizeof(T);
  const uint32_t stride = (element * w + 31) & ~31u;
  const int32_t sweeps = (int32_t)(2 * stride * (h + 1) + 4 * h * stride + h + 66);
  const int32_t queues = (int32_t)(16 * w * h + element * (w + 2) * (h + 2) + 48);
  *bytes = sweeps > queues ? sweeps : queues;
  return orvStatusOk;
}

template <class T>
OrvStatus segment(const WatershedJob<T>& job, void (*queues)(const WatershedJob<T>*),
                  void (*sweeps)(const WatershedJob<T>*)) {
  ORV_REQUIRE(allSet(job.src.data, job.markers.data, job.buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(job.size), orvStatusSize);
  ORV_REQUIRE(job.src.step >= job.size.width && job.markers.step >= rowBytes<T>(job.size.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(job.markers.step), orvStatusStepAlign);
  if (job.flags & watershedQueue) {
    ORV_REQUIRE(job.norm == normInf || job.norm == normL1, orvStatusBadArg);
    queues(&job);
  } else {
    ORV_REQUIRE((job.flags & watershedSweep) != 0, orvStatusBadArg);
    ORV_REQUIRE(job.norm >= normInf && job.norm <= normFastMarching, orvStatusBadArg);
    sweeps(&job);
  }
  return orvStatusOk;
}

}  // namespace

OrvStatus orviSegmentWatershedGetBufferSize_8u_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportBytes<uint8_t>(roiSize, bufferSize);
}
OrvStatus orviSegmentWatershedGetBufferSize_8u16u_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportBytes<uint16_t>(roiSize, bufferSize);
}

OrvStatus orviSegmentWatershed_8u_C1IR(const uint8_t* src, int32_t srcStep, uint8_t* markers, int32_t markerStep,
                                       OrvSize roiSize, int32_t norm, int32_t flags, uint8_t* buffer) {
  return segment<uint8_t>({{src, srcStep}, {markers, markerStep}, roiSize, norm, flags, buffer},
                          ownSegmentWaterhedPQ_8u, ownSegmentWatershedSweep_8u);
}
OrvStatus orviSegmentWatershed_8u16u_C1IR(const uint8_t* src, int32_t srcStep, uint16_t* markers, int32_t markerStep,
                                          OrvSize roiSize, int32_t norm, int32_t flags, uint8_t* buffer) {
  return segment<uint16_t>({{src, srcStep}, {markers, markerStep}, roiSize, norm, flags, buffer},
                           ownSegmentWaterhedPQ_16u, ownSegmentWatershedSweep_16u);
}
