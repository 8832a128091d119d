// Copy of an image whose border is real memory on the flagged sides and repeats the nearest pixel on the others.
#include "filter/border_copy.h"
#include "filter/copy_window.h"

namespace {

template <class T, int C>
OrvStatus copyInMem(const T* src, int32_t srcStep, OrvSize srcSize, T* dst, int32_t dstStep, OrvSize dstSize,
                    int32_t borderType, int32_t top, int32_t left) {
  const OrvStatus status = checkBorderCopy(src, srcStep, srcSize, dst, dstStep, dstSize, top, left);
  if (status == orvStatusOk) {
    copyWindow({src,
                srcStep,
                srcSize,
                dst,
                dstStep,
                dstSize,
                {-left, -top},
                orvBorderRepl,
                sidesInMemory(borderType),
                nullptr,
                C * sizeof(T)});
  }
  return status;
}

}  // namespace

#define IN_MEM_BORDER(name, T, C)                                                                           \
  ORV_IN_MEM_BORDER(name, T) {                                                                              \
    return copyInMem<T, C>(src, srcStep, srcRoiSize, dst, dstStep, dstRoiSize, borderType, topBorderHeight, \
                           leftBorderWidth);                                                                \
  }
IN_MEM_BORDER(ownorviCopyInMemBorder_8u_C1R, uint8_t, 1)
IN_MEM_BORDER(ownorviCopyInMemBorder_8u_C3R, uint8_t, 3)
IN_MEM_BORDER(ownorviCopyInMemBorder_8u_C4R, uint8_t, 4)
IN_MEM_BORDER(ownorviCopyInMemBorder_16s_C1R, int16_t, 1)
IN_MEM_BORDER(ownorviCopyInMemBorder_32f_C1R, float, 1)
IN_MEM_BORDER(ownorviCopyInMemBorder_32f_C3R, float, 3)
IN_MEM_BORDER(ownorviCopyInMemBorder_32f_C4R, float, 4)
