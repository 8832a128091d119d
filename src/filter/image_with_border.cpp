// A new image: a copy with its border, in memory that the caller releases.
#include "core/image.h"
#include "core/primitives.h"
#include "filter/border_copy.h"
#include "filter/copy_window.h"

namespace {

// The copy, or null if there is no memory for it or its bytes exceed 32 bits. Its rows are packed.
template <class T, int C>
T* imageWithBorder(const T* src, int32_t srcStep, OrvSize size, int32_t kind, T borderValue, int32_t left,
                   int32_t right, int32_t top, int32_t bottom) {
  const int64_t width = (int64_t)size.width + left + right, height = (int64_t)size.height + top + bottom;
  const int64_t step = width * (C * sizeof(T));
  if (step > INT32_MAX || height > INT32_MAX || step * height > INT32_MAX) return nullptr;
  T* image = (T*)(void*)orvsMalloc_8u((int32_t)(step * height));
  if (!image) return nullptr;
  LooseElement<T> pixel[C];
  for (auto& channel : pixel) channel = borderValue;
  copyWindow({src,
              srcStep,
              size,
              image,
              (int32_t)step,
              {(int32_t)width, (int32_t)height},
              {-left, -top},
              kind,
              0,
              pixel,
              C * sizeof(T)});
  return image;
}

}  // namespace

#define IMAGE_WITH_BORDER(name, T, C)                                                                 \
  ORV_IMAGE_WITH_BORDER(name, T) {                                                                    \
    return imageWithBorder<T, C>(src, srcStep, srcSize, kind, borderValue, left, right, top, bottom); \
  }
IMAGE_WITH_BORDER(ownCopyWithBorder_8u_C1R, uint8_t, 1)
IMAGE_WITH_BORDER(ownCopyWithBorder_8u_C3R, uint8_t, 3)
IMAGE_WITH_BORDER(ownCopyWithBorder_16u_C1R, uint16_t, 1)
IMAGE_WITH_BORDER(ownCopyWithBorder_16u_C3R, uint16_t, 3)
IMAGE_WITH_BORDER(ownCopyWithBorder_32f_C1R, float, 1)
IMAGE_WITH_BORDER(ownCopyWithBorder_32f_C3R, float, 3)
