// Copy of an image with a constant border.
#include "filter/border_copy.h"
#include "filter/copy_window.h"

namespace {

// `value` is a whole pixel; only its bits count.
template <class T>
OrvStatus copyConst(const T* src, int32_t srcStep, OrvSize srcSize, T* dst, int32_t dstStep, OrvSize dstSize,
                    int32_t top, int32_t left, T value) {
  const OrvStatus status = checkBorderCopy(src, srcStep, srcSize, dst, dstStep, dstSize, top, left);
  if (status == orvStatusOk)
    copyWindow({src, srcStep, srcSize, dst, dstStep, dstSize, {-left, -top}, orvBorderConst, 0, &value, sizeof(T)});
  return status;
}

}  // namespace

#define CONST_BORDER(name, T)                                                                                      \
  ORV_CONST_BORDER(name, T) {                                                                                      \
    return copyConst(src, srcStep, srcRoiSize, dst, dstStep, dstRoiSize, topBorderHeight, leftBorderWidth, value); \
  }
CONST_BORDER(orviCopyConstBorder_8u_C1R, uint8_t)
CONST_BORDER(orviCopyConstBorder_16u_C1R, uint16_t)
CONST_BORDER(orviCopyConstBorder_16s_C1R, int16_t)
CONST_BORDER(orviCopyConstBorder_32s_C1R, int32_t)
CONST_BORDER(orviCopyConstBorder_32f_C1R, float)
