// Whole-image copies with a border, by element type and channels. Rows and pixels may lie at any address.
//
// The copies into a larger image write the rectangle dstRoiSize from dst on: the source at row topBorderHeight, column
// leftBorderWidth, and the border around it; what is left on the right and below is border too. Statuses, in order:
//   orvStatusNullPtr  src or dst is null
//   orvStatusStep     a step below 1; steps are not compared with the rows
//   orvStatusSize     a width or height below 1, a negative border, or a destination that doesn't hold source and
//   border
// Source and destination must not overlap, but for the in-place forms. Scratch: none. Thread safety: all of them.
#pragma once
#include "filter/names.h"
#include "filter/border.h"

extern "C" {

// The border is `value`.
#define ORV_CONST_BORDER(name, T)                                                                                \
  OrvStatus name(const T* src, int32_t srcStep, OrvSize srcRoiSize, T* dst, int32_t dstStep, OrvSize dstRoiSize, \
                 int32_t topBorderHeight, int32_t leftBorderWidth, T value)
ORV_CONST_BORDER(orviCopyConstBorder_8u_C1R, uint8_t);
ORV_CONST_BORDER(orviCopyConstBorder_16u_C1R, uint16_t);
ORV_CONST_BORDER(orviCopyConstBorder_16s_C1R, int16_t);
ORV_CONST_BORDER(orviCopyConstBorder_32s_C1R, int32_t);
ORV_CONST_BORDER(orviCopyConstBorder_32f_C1R, float);

// The border repeats the nearest pixel. With src == dst these are the in-place forms, and srcStep is only checked.
#define ORV_REPLICATE_BORDER(name, T)                                                                            \
  OrvStatus name(const T* src, int32_t srcStep, OrvSize srcRoiSize, T* dst, int32_t dstStep, OrvSize dstRoiSize, \
                 int32_t topBorderHeight, int32_t leftBorderWidth)
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_8u_C1R, uint8_t);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_8u_C3R, uint8_t);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_8u_C4R, uint8_t);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_16u_C1R, uint16_t);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_16s_C1R, int16_t);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_32s_C1R, int32_t);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_32s_C3R, int32_t);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_32s_C4R, int32_t);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_32f_C1R, float);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_32f_C3R, float);
ORV_REPLICATE_BORDER(orviCopyReplicateBorder_32f_C4R, float);

// In place: srcDst is the first pixel of the whole rectangle dstRoiSize, and the source stands in it already, from row
// topBorderHeight, column leftBorderWidth on. Only the border is written.
#define ORV_REPLICATE_BORDER_IN_PLACE(name, T)                                                                   \
  OrvStatus name(T* srcDst, int32_t srcDstStep, OrvSize srcRoiSize, OrvSize dstRoiSize, int32_t topBorderHeight, \
                 int32_t leftBorderWidth)
ORV_REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_8u_C1IR, uint8_t);
ORV_REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_8u_C3IR, uint8_t);
ORV_REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_8u_C4IR, uint8_t);
ORV_REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_16s_C1IR, int16_t);
ORV_REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_32s_C1IR, int32_t);
ORV_REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_32s_C3IR, int32_t);
ORV_REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_32s_C4IR, int32_t);

// A side whose flag is set in borderType is read from the memory around the source, the others repeat the nearest
// pixel; a borderType of exactly orvBorderInMem sets all four flags, its kind counts for nothing else. 16u images take
// the 16s form.
#define ORV_IN_MEM_BORDER(name, T)                                                                               \
  OrvStatus name(const T* src, int32_t srcStep, OrvSize srcRoiSize, T* dst, int32_t dstStep, OrvSize dstRoiSize, \
                 int32_t borderType, int32_t topBorderHeight, int32_t leftBorderWidth)
ORV_IN_MEM_BORDER(ownorviCopyInMemBorder_8u_C1R, uint8_t);
ORV_IN_MEM_BORDER(ownorviCopyInMemBorder_8u_C3R, uint8_t);
ORV_IN_MEM_BORDER(ownorviCopyInMemBorder_8u_C4R, uint8_t);
ORV_IN_MEM_BORDER(ownorviCopyInMemBorder_16s_C1R, int16_t);
ORV_IN_MEM_BORDER(ownorviCopyInMemBorder_32f_C1R, float);
ORV_IN_MEM_BORDER(ownorviCopyInMemBorder_32f_C3R, float);
ORV_IN_MEM_BORDER(ownorviCopyInMemBorder_32f_C4R, float);

// The same two for packed bits. Pixel p of a row is bit (offset + p) & 7, counted from the least significant, of byte
// (offset + p) >> 3 behind the row's pointer. An offset may be negative or above 7: it then leads to other bytes. Bits
// of the destination beside the rectangle keep their value; bytes of the source without a wanted pixel aren't read.
OrvStatus ownorviCopyReplicateBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset,
                                            OrvSize srcRoiSize, uint8_t* dst, int32_t dstStep, int32_t dstBitOffset,
                                            OrvSize dstRoiSize, int32_t topBorderHeight, int32_t leftBorderWidth);
OrvStatus ownorviCopyInMemBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, OrvSize srcRoiSize,
                                        uint8_t* dst, int32_t dstStep, int32_t dstBitOffset, OrvSize dstRoiSize,
                                        int32_t borderType, int32_t topBorderHeight, int32_t leftBorderWidth);

// A new image of (left + width + right) x (top + height + bottom) pixels, rows packed, with a border by `kind`;
// borderValue stands in every channel. Null if the memory isn't to be had. The caller releases it with orvsFree.
#define ORV_IMAGE_WITH_BORDER(name, T)                                                                              \
  T* name(const T* src, int32_t srcStep, OrvSize srcSize, int32_t kind, T borderValue, int32_t left, int32_t right, \
          int32_t top, int32_t bottom)
ORV_IMAGE_WITH_BORDER(ownCopyWithBorder_8u_C1R, uint8_t);
ORV_IMAGE_WITH_BORDER(ownCopyWithBorder_8u_C3R, uint8_t);
ORV_IMAGE_WITH_BORDER(ownCopyWithBorder_16u_C1R, uint16_t);
ORV_IMAGE_WITH_BORDER(ownCopyWithBorder_16u_C3R, uint16_t);
ORV_IMAGE_WITH_BORDER(ownCopyWithBorder_32f_C1R, float);
ORV_IMAGE_WITH_BORDER(ownCopyWithBorder_32f_C3R, float);

// The window of windowSize pixels at `offset` from the first pixel of the source, to dst. It may stick out on any side
// or lie beside the source. Sides are in memory by their flags, orvBorderInMem means all four whatever flags stand
// beside it; the other sides are made by the kind. Statuses as above.
OrvStatus CopyWithBorder8u(const uint8_t* src, int32_t srcStep, OrvSize srcSize, uint8_t* dst, int32_t dstStep,
                           int32_t borderType, OrvPoint offset, OrvSize windowSize, uint8_t borderValue);
OrvStatus CopyWithBorder32f(const float* src, int32_t srcStep, OrvSize srcSize, float* dst, int32_t dstStep,
                            int32_t borderType, OrvPoint offset, OrvSize windowSize, float borderValue);
}
