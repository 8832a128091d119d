// Row stages of separable filters: arguments and threads.
#include "core/bands.h"
#include "filter/pipeline_buffer.h"
#include "filter/row_stage.h"
#include <type_traits>

namespace ORV_VARIANT {
namespace {

template <class Pixel, class Dst>
struct RowFamily {
  using Filter = RowFilter<Pixel, std::conditional_t<std::is_same<Pixel, uint8_t>::value, int16_t, Pixel>>;
  void (*stage)(Plane<const Pixel>, Dst* const*, int32_t, int32_t, const Filter&, void*);
  LinearSize workArea;  // of a thread, by the kernel size; it holds the strip
  Team team;
};

constexpr RowFamily<uint8_t, int16_t> row_8u16s_C1{RowStage_8u16s, {36, 112}, Team::byArea},
    row_8u16s_C3{RowStage_8u16s, {60, 112}, Team::byArea};
constexpr RowFamily<int16_t, int16_t> row_16s_C1{RowStage_16s, {48, 80}, Team::byArea},
    row_16s_C3{RowStage_16s, {40, 64}, Team::byArea}, row_Low_16s_C1{RowStage_Low_16s, {24, 64}, Team::byArea},
    row_Low_16s_C3{RowStage_Low_16s, {208, 64}, Team::byArea};
constexpr RowFamily<uint16_t, uint16_t> row_16u_C1{RowStage_16u, {48, 80}, Team::never},
    row_16u_C3{RowStage_16u, {112, 80}, Team::never};
constexpr RowFamily<float, float> row_32f_C1{RowStage_32f, {128, 80}, Team::byAreaAndKernel},
    row_32f_C3{RowStage_32f, {192, 32}, Team::byArea};

template <class Family>
OrvStatus rowBufferSize(const Family& family, OrvSize roi, int32_t kernelSize, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi) && kernelSize >= 1, orvStatusSize);
  const int32_t area = family.workArea(kernelSize);
  *bufferSize = family.team == Team::never ? area : threadedBufferSize(area, roi.height, kernelSize);
  return orvStatusOk;
}

template <class Pixel, class Dst>
OrvStatus rowPipeline(const RowFamily<Pixel, Dst>& family, const Pixel* src, int32_t srcStep, Dst* const* dstRows,
                      OrvSize roi, const typename RowFamily<Pixel, Dst>::Filter& filter, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dstRows, filter.taps, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(!anyNull(dstRows, roi.height), orvStatusNullPtr);
  ORV_REQUIRE(filter.borderValue, orvStatusNullPtr);
  ORV_REQUIRE(filter.size >= 1, orvStatusSize);
  ORV_REQUIRE(filter.anchor >= 0 && filter.anchor < filter.size, orvStatusAnchor);
  ORV_REQUIRE(srcStep >= rowBytes<Pixel>(roi.width, filter.channels), orvStatusStep);
  ORV_REQUIRE(stepsAligned<Pixel>(srcStep), orvStatusStepAlign);
  const int32_t border = filter.borderType;
  ORV_REQUIRE(border == orvBorderConst || border == orvBorderRepl || border == orvBorderInMem, orvStatusBadArg);
  constexpr bool isUnsigned = std::is_same<Pixel, uint16_t>::value;
  ORV_REQUIRE(filter.divisor != 0 && (!isUnsigned || filter.divisor > 0), orvStatusBadArg);
  const Plane<const Pixel> image{src, srcStep};
  const bool threaded = usesTeam(family.team, roi, filter.size);
  runBands(threaded, roi.height, [&](int32_t first, int32_t rows) {
    const ptrdiff_t id = threaded ? owncvGetIdThreads() : 0;
    family.stage(image.from(first), dstRows + first, roi.width, rows, filter,
                 buffer + id * family.workArea(filter.size));
  });
  return orvStatusOk;
}

}  // namespace
}  // namespace ORV_VARIANT

OrvStatus orviFilterRowBorderPipeline_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* const* dstRows,
                                                OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                                int32_t anchor, OrvBorderType borderType, uint8_t borderValue,
                                                int32_t divisor, uint8_t* buffer) {
  return rowPipeline(row_8u16s_C1, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 1, borderType, &borderValue, divisor}, buffer);
}
OrvStatus orviFilterRowBorderPipeline_8u16s_C3R(const uint8_t* src, int32_t srcStep, int16_t* const* dstRows,
                                                OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                                int32_t anchor, OrvBorderType borderType, const uint8_t* borderValue,
                                                int32_t divisor, uint8_t* buffer) {
  return rowPipeline(row_8u16s_C3, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 3, borderType, borderValue, divisor}, buffer);
}
OrvStatus orviFilterRowBorderPipeline_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* const* dstRows,
                                              OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                              int32_t anchor, OrvBorderType borderType, int16_t borderValue,
                                              int32_t divisor, uint8_t* buffer) {
  return rowPipeline(row_16s_C1, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 1, borderType, &borderValue, divisor}, buffer);
}
OrvStatus orviFilterRowBorderPipeline_16s_C3R(const int16_t* src, int32_t srcStep, int16_t* const* dstRows,
                                              OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                              int32_t anchor, OrvBorderType borderType, const int16_t* borderValue,
                                              int32_t divisor, uint8_t* buffer) {
  return rowPipeline(row_16s_C3, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 3, borderType, borderValue, divisor}, buffer);
}
OrvStatus orviFilterRowBorderPipeline_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* const* dstRows,
                                              OrvSize roiSize, const uint16_t* kernel, int32_t kernelSize,
                                              int32_t anchor, OrvBorderType borderType, uint16_t borderValue,
                                              int32_t divisor, uint8_t* buffer) {
  return rowPipeline(row_16u_C1, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 1, borderType, &borderValue, divisor}, buffer);
}
OrvStatus orviFilterRowBorderPipeline_16u_C3R(const uint16_t* src, int32_t srcStep, uint16_t* const* dstRows,
                                              OrvSize roiSize, const uint16_t* kernel, int32_t kernelSize,
                                              int32_t anchor, OrvBorderType borderType, const uint16_t* borderValue,
                                              int32_t divisor, uint8_t* buffer) {
  return rowPipeline(row_16u_C3, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 3, borderType, borderValue, divisor}, buffer);
}
OrvStatus orviFilterRowBorderPipeline_32f_C1R(const float* src, int32_t srcStep, float* const* dstRows, OrvSize roiSize,
                                              const float* kernel, int32_t kernelSize, int32_t anchor,
                                              OrvBorderType borderType, float borderValue, uint8_t* buffer) {
  return rowPipeline(row_32f_C1, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 1, borderType, &borderValue, 1}, buffer);
}
OrvStatus orviFilterRowBorderPipeline_32f_C3R(const float* src, int32_t srcStep, float* const* dstRows, OrvSize roiSize,
                                              const float* kernel, int32_t kernelSize, int32_t anchor,
                                              OrvBorderType borderType, const float* borderValue, uint8_t* buffer) {
  return rowPipeline(row_32f_C3, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 3, borderType, borderValue, 1}, buffer);
}
OrvStatus orviFilterRowBorderPipeline_Low_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* const* dstRows,
                                                  OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                                  int32_t anchor, OrvBorderType borderType, int16_t borderValue,
                                                  int32_t divisor, uint8_t* buffer) {
  return rowPipeline(row_Low_16s_C1, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 1, borderType, &borderValue, divisor}, buffer);
}
OrvStatus orviFilterRowBorderPipeline_Low_16s_C3R(const int16_t* src, int32_t srcStep, int16_t* const* dstRows,
                                                  OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                                  int32_t anchor, OrvBorderType borderType, const int16_t* borderValue,
                                                  int32_t divisor, uint8_t* buffer) {
  return rowPipeline(row_Low_16s_C3, src, srcStep, dstRows, roiSize,
                     {kernel, kernelSize, anchor, 3, borderType, borderValue, divisor}, buffer);
}

OrvStatus orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return rowBufferSize(row_8u16s_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterRowBorderPipelineGetBufferSize_8u16s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return rowBufferSize(row_8u16s_C3, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterRowBorderPipelineGetBufferSize_16s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return rowBufferSize(row_16s_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterRowBorderPipelineGetBufferSize_16s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return rowBufferSize(row_16s_C3, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterRowBorderPipelineGetBufferSize_16u_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return rowBufferSize(row_16u_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterRowBorderPipelineGetBufferSize_16u_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return rowBufferSize(row_16u_C3, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterRowBorderPipelineGetBufferSize_32f_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return rowBufferSize(row_32f_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterRowBorderPipelineGetBufferSize_32f_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  return rowBufferSize(row_32f_C3, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterRowBorderPipelineGetBufferSize_Low_16s_C1R(OrvSize roiSize, int32_t kernelSize,
                                                               int32_t* bufferSize) {
  return rowBufferSize(row_Low_16s_C1, roiSize, kernelSize, bufferSize);
}
OrvStatus orviFilterRowBorderPipelineGetBufferSize_Low_16s_C3R(OrvSize roiSize, int32_t kernelSize,
                                                               int32_t* bufferSize) {
  return rowBufferSize(row_Low_16s_C3, roiSize, kernelSize, bufferSize);
}
