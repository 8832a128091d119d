// Column stages of separable filters: arguments and threads.
#include "core/bands.h"
#include "filter/column_stage.h"
#include "filter/pipeline_buffer.h"

namespace ORV_VARIANT {
namespace {

template <class Src, class Dst>
struct ColumnFamily {
  void (*stage)(const Src* const*, Plane<Dst>, int32_t, int32_t, const ColumnFilter<Src>&);
  LinearSize workArea;  // of a thread, by the width rounded up
  int32_t widthMultiple;
  Team team;
};

constexpr ColumnFamily<int16_t, int16_t> column_16s_C1{ColumnStage_16s, {12, 32}, 4, Team::byAreaAndKernel},
    column_16s_C3{ColumnStage_16s, {36, 32}, 4, Team::byAreaAndKernel},
    column_Low_16s_C1{ColumnStage_Low_16s, {12, 32}, 8, Team::byAreaAndKernel},
    column_Low_16s_C3{ColumnStage_Low_16s, {36, 32}, 8, Team::byAreaAndKernel};
constexpr ColumnFamily<int16_t, uint8_t> column_16s8u_C1{ColumnStage_16s8u, {12, 32}, 4, Team::byAreaAndKernel},
    column_16s8u_C3{ColumnStage_16s8u, {36, 32}, 4, Team::byAreaAndKernel};
constexpr ColumnFamily<int16_t, int8_t> column_16s8s_C1{ColumnStage_16s8s, {12, 32}, 4, Team::byAreaAndKernel},
    column_16s8s_C3{ColumnStage_16s8s, {36, 32}, 4, Team::byAreaAndKernel};
constexpr ColumnFamily<uint16_t, uint16_t> column_16u_C1{ColumnStage_16u, {0, 32}, 1, Team::never},
    column_16u_C3{ColumnStage_16u, {0, 32}, 1, Team::never};
constexpr ColumnFamily<float, float> column_32f_C1{ColumnStage_32f, {0, 32}, 1, Team::never},
    column_32f_C3{ColumnStage_32f, {0, 32}, 1, Team::never};

template <class Family>
OrvStatus columnBufferSize(const Family& family, OrvSize roi, int32_t kernelSize, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi) && kernelSize >= 1, orvStatusSize);
  const int32_t columns = wrapAdd(roi.width, family.widthMultiple - 1) & -family.widthMultiple;
  const int32_t area = family.workArea(columns);
  *bufferSize = family.team == Team::never ? area : threadedBufferSize(area, roi.height, kernelSize);
  return orvStatusOk;
}

template <class Src, class Dst>
OrvStatus columnPipeline(const ColumnFamily<Src, Dst>& family, const Src* const* srcRows, Dst* dst, int32_t dstStep,
                         OrvSize roi, ColumnFilter<Src> filter, uint8_t* buffer) {
  ORV_REQUIRE(allSet(srcRows, dst, filter.taps), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(!anyNull(srcRows, wrapAdd(roi.height, filter.size - 1)), orvStatusNullPtr);
  ORV_REQUIRE(filter.size >= 1, orvStatusSize);
  ORV_REQUIRE(dstStep >= rowBytes<Dst>(roi.width, filter.channels), orvStatusStep);
  ORV_REQUIRE(stepsAligned<Dst>(dstStep), orvStatusStepAlign);
  ORV_REQUIRE(buffer, orvStatusNullPtr);
  ORV_REQUIRE(filter.divisor != 0, orvStatusBadArg);
  const Plane<Dst> image{dst, dstStep};
  const bool threaded = usesTeam(family.team, roi, filter.size);
  runBands(threaded, roi.height, [&](int32_t first, int32_t rows) {
    // The scaled taps lie where the pointers of a thread may: there are more bytes of these than taps need.
    ColumnFilter<Src> own = filter;
    const ptrdiff_t id = threaded ? owncvGetIdThreads() : 0;
    own.scaledTaps = (float*)(void*)(buffer + id * pointerSlice(roi.height, filter.size));
    family.stage(srcRows + first, image.from(first), roi.width, rows, own);
  });
  return orvStatusOk;
}

}  // namespace
}  // namespace ORV_VARIANT

OrvStatus orviFilterColumnPipeline_16s_C1R(const int16_t* const* srcRows, int16_t* dst, int32_t dstStep,
                                           OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                           int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_16s_C1, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 1, divisor, nullptr},
                        buffer);
}
OrvStatus orviFilterColumnPipeline_16s_C3R(const int16_t* const* srcRows, int16_t* dst, int32_t dstStep,
                                           OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                           int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_16s_C3, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 3, divisor, nullptr},
                        buffer);
}
OrvStatus orviFilterColumnPipeline_16s8u_C1R(const int16_t* const* srcRows, uint8_t* dst, int32_t dstStep,
                                             OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                             int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_16s8u_C1, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 1, divisor, nullptr},
                        buffer);
}
OrvStatus orviFilterColumnPipeline_16s8u_C3R(const int16_t* const* srcRows, uint8_t* dst, int32_t dstStep,
                                             OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                             int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_16s8u_C3, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 3, divisor, nullptr},
                        buffer);
}
OrvStatus orviFilterColumnPipeline_16s8s_C1R(const int16_t* const* srcRows, int8_t* dst, int32_t dstStep,
                                             OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                             int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_16s8s_C1, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 1, divisor, nullptr},
                        buffer);
}
OrvStatus orviFilterColumnPipeline_16s8s_C3R(const int16_t* const* srcRows, int8_t* dst, int32_t dstStep,
                                             OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                             int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_16s8s_C3, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 3, divisor, nullptr},
                        buffer);
}
OrvStatus orviFilterColumnPipeline_16u_C1R(const uint16_t* const* srcRows, uint16_t* dst, int32_t dstStep,
                                           OrvSize dstRoiSize, const uint16_t* kernel, int32_t kernelSize,
                                           int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_16u_C1, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 1, divisor, nullptr},
                        buffer);
}
OrvStatus orviFilterColumnPipeline_16u_C3R(const uint16_t* const* srcRows, uint16_t* dst, int32_t dstStep,
                                           OrvSize dstRoiSize, const uint16_t* kernel, int32_t kernelSize,
                                           int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_16u_C3, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 3, divisor, nullptr},
                        buffer);
}
OrvStatus orviFilterColumnPipeline_32f_C1R(const float* const* srcRows, float* dst, int32_t dstStep, OrvSize dstRoiSize,
                                           const float* kernel, int32_t kernelSize, uint8_t* buffer) {
  return columnPipeline(column_32f_C1, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 1, 1, nullptr}, buffer);
}
OrvStatus orviFilterColumnPipeline_32f_C3R(const float* const* srcRows, float* dst, int32_t dstStep, OrvSize dstRoiSize,
                                           const float* kernel, int32_t kernelSize, uint8_t* buffer) {
  return columnPipeline(column_32f_C3, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 3, 1, nullptr}, buffer);
}
OrvStatus orviFilterColumnPipeline_Low_16s_C1R(const int16_t* const* srcRows, int16_t* dst, int32_t dstStep,
                                               OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                               int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_Low_16s_C1, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 1, divisor, nullptr},
                        buffer);
}
OrvStatus orviFilterColumnPipeline_Low_16s_C3R(const int16_t* const* srcRows, int16_t* dst, int32_t dstStep,
                                               OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                               int32_t divisor, uint8_t* buffer) {
  return columnPipeline(column_Low_16s_C3, srcRows, dst, dstStep, dstRoiSize, {kernel, kernelSize, 3, divisor, nullptr},
                        buffer);
}

OrvStatus orviFilterColumnPipelineGetBufferSize_16s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_16s_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_16s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_16s_C3, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_16s8u_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_16s8u_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_16s8u_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_16s8u_C3, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_16s8s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_16s8s_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_16s8s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_16s8s_C3, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_16u_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_16u_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_16u_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_16u_C3, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_32f_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_32f_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_32f_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_32f_C3, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_Low_16s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_Low_16s_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterColumnPipelineGetBufferSize_Low_16s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return columnBufferSize(column_Low_16s_C3, roiSize, kernelSize, bufferSize);
}
