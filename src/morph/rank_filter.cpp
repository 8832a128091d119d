// Rank filters: minimum and maximum over a rectangle, with the image's edge pixels repeated beyond it.
#include "morph/rank_driver.h"
#include "morph/rank_filter_16.h"

OrvStatus orviFilterMinBorderReplicate_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::min, 1, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMinGetBufferSize_8u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(1, roiWidth, maskSize, bufferSize);
}
OrvStatus orviFilterMaxBorderReplicate_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::max, 1, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMaxGetBufferSize_8u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(1, roiWidth, maskSize, bufferSize);
}

OrvStatus orviFilterMinBorderReplicate_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::min, 3, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMinGetBufferSize_8u_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(3, roiWidth, maskSize, bufferSize);
}
OrvStatus orviFilterMaxBorderReplicate_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::max, 3, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMaxGetBufferSize_8u_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(3, roiWidth, maskSize, bufferSize);
}

OrvStatus orviFilterMinBorderReplicate_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::min, 4, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMinGetBufferSize_8u_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(4, roiWidth, maskSize, bufferSize);
}
OrvStatus orviFilterMaxBorderReplicate_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::max, 4, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMaxGetBufferSize_8u_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(4, roiWidth, maskSize, bufferSize);
}

OrvStatus orviFilterMinBorderReplicate_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::min, 1, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMinGetBufferSize_32f_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(4, roiWidth, maskSize, bufferSize);
}
OrvStatus orviFilterMaxBorderReplicate_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::max, 1, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMaxGetBufferSize_32f_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(4, roiWidth, maskSize, bufferSize);
}

OrvStatus orviFilterMinBorderReplicate_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::min, 3, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMinGetBufferSize_32f_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(12, roiWidth, maskSize, bufferSize);
}
OrvStatus orviFilterMaxBorderReplicate_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::max, 3, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMaxGetBufferSize_32f_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(12, roiWidth, maskSize, bufferSize);
}

OrvStatus orviFilterMinBorderReplicate_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::min, 4, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMinGetBufferSize_32f_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(16, roiWidth, maskSize, bufferSize);
}
OrvStatus orviFilterMaxBorderReplicate_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::max, 4, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus orviFilterMaxGetBufferSize_32f_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  return rankBufferSize(16, roiWidth, maskSize, bufferSize);
}

OrvStatus ownorviFilterMinBorderReplicate_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::min, 1, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus ownorviFilterMaxBorderReplicate_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::max, 1, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus ownorviFilterMinGetBufferSize_16u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  const OrvStatus status = rankBufferSize(2, roiWidth, maskSize, bufferSize);
  if (status == orvStatusOk) *bufferSize = wrapMul(*bufferSize, 2);  // larger than needed, as the states expect it
  return status;
}
OrvStatus ownorviFilterMaxGetBufferSize_16u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize) {
  const OrvStatus status = rankBufferSize(2, roiWidth, maskSize, bufferSize);
  if (status == orvStatusOk) *bufferSize = wrapMul(*bufferSize, 2);  // larger than needed, as the states expect it
  return status;
}
OrvStatus ownorviFilterMinBorderReplicate_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::min, 1, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
OrvStatus ownorviFilterMaxBorderReplicate_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer) {
  return rankFilter(Rank::max, 1, src, srcStep, dst, dstStep, roiSize, maskSize, anchor, buffer);
}
