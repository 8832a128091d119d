// Copy of an image whose border repeats the nearest pixel, into another image and in place.
#include "core/image.h"
#include "filter/border_copy.h"
#include "filter/copy_window.h"

namespace {

// The region stands in the destination already; the border around it is completed.
template <class T, int C>
OrvStatus replicateInPlace(T* srcDst, int32_t step, OrvSize srcSize, OrvSize dstSize, int32_t top, int32_t left) {
  const OrvStatus status = checkBorderCopy(srcDst, step, srcSize, srcDst, step, dstSize, top, left);
  if (status != orvStatusOk) return status;
  const auto* region = Plane<T>{srcDst, step}.row(top) + (ptrdiff_t)left * C;
  copyWindow({region, step, srcSize, srcDst, step, dstSize, {-left, -top}, orvBorderRepl, 0, nullptr, C * sizeof(T)});
  return orvStatusOk;
}

template <class T, int C>
OrvStatus replicate(const T* src, int32_t srcStep, OrvSize srcSize, T* dst, int32_t dstStep, OrvSize dstSize,
                    int32_t top, int32_t left) {
  const OrvStatus status = checkBorderCopy(src, srcStep, srcSize, dst, dstStep, dstSize, top, left);
  if (status != orvStatusOk) return status;
  if (src == dst) return replicateInPlace<T, C>(dst, dstStep, srcSize, dstSize, top, left);
  copyWindow({src, srcStep, srcSize, dst, dstStep, dstSize, {-left, -top}, orvBorderRepl, 0, nullptr, C * sizeof(T)});
  return orvStatusOk;
}

}  // namespace

#define REPLICATE_BORDER(name, T, C)                                                                              \
  ORV_REPLICATE_BORDER(name, T) {                                                                                 \
    return replicate<T, C>(src, srcStep, srcRoiSize, dst, dstStep, dstRoiSize, topBorderHeight, leftBorderWidth); \
  }
REPLICATE_BORDER(orviCopyReplicateBorder_8u_C1R, uint8_t, 1)
REPLICATE_BORDER(orviCopyReplicateBorder_8u_C3R, uint8_t, 3)
REPLICATE_BORDER(orviCopyReplicateBorder_8u_C4R, uint8_t, 4)
REPLICATE_BORDER(orviCopyReplicateBorder_16u_C1R, uint16_t, 1)
REPLICATE_BORDER(orviCopyReplicateBorder_16s_C1R, int16_t, 1)
REPLICATE_BORDER(orviCopyReplicateBorder_32s_C1R, int32_t, 1)
REPLICATE_BORDER(orviCopyReplicateBorder_32s_C3R, int32_t, 3)
REPLICATE_BORDER(orviCopyReplicateBorder_32s_C4R, int32_t, 4)
REPLICATE_BORDER(orviCopyReplicateBorder_32f_C1R, float, 1)
REPLICATE_BORDER(orviCopyReplicateBorder_32f_C3R, float, 3)
REPLICATE_BORDER(orviCopyReplicateBorder_32f_C4R, float, 4)

#define REPLICATE_BORDER_IN_PLACE(name, T, C)                                                                    \
  ORV_REPLICATE_BORDER_IN_PLACE(name, T) {                                                                       \
    return replicateInPlace<T, C>(srcDst, srcDstStep, srcRoiSize, dstRoiSize, topBorderHeight, leftBorderWidth); \
  }
REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_8u_C1IR, uint8_t, 1)
REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_8u_C3IR, uint8_t, 3)
REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_8u_C4IR, uint8_t, 4)
REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_16s_C1IR, int16_t, 1)
REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_32s_C1IR, int32_t, 1)
REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_32s_C3IR, int32_t, 3)
REPLICATE_BORDER_IN_PLACE(orviCopyReplicateBorder_32s_C4IR, int32_t, 4)
