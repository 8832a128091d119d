// The border strip of a row, by element type.
#include "filter/row_border.h"

void FillBorder_8u_C1(const uint8_t* src, uint8_t* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                      int32_t borderType, uint8_t borderValue) {
  fillBorder<uint8_t, 1>(src, strip, width, kernelSize, anchor, borderType, &borderValue);
}

void FillBorder_16s_C1(const int16_t* src, int16_t* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                       int32_t borderType, int16_t borderValue) {
  fillBorder<int16_t, 1>(src, strip, width, kernelSize, anchor, borderType, &borderValue);
}

void FillBorder_32f_C1(const float* src, float* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                       int32_t borderType, float borderValue) {
  fillBorder<float, 1>(src, strip, width, kernelSize, anchor, borderType, &borderValue);
}

void FillBorder_8u_C3(const uint8_t* src, uint8_t* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                      int32_t borderType, const uint8_t* borderValue) {
  fillBorder<uint8_t, 3>(src, strip, width, kernelSize, anchor, borderType, borderValue);
}

void FillBorder_16s_C3(const int16_t* src, int16_t* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                       int32_t borderType, const int16_t* borderValue) {
  fillBorder<int16_t, 3>(src, strip, width, kernelSize, anchor, borderType, borderValue);
}

void FillBorder_32f_C3(const float* src, float* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                       int32_t borderType, const float* borderValue) {
  fillBorder<float, 3>(src, strip, width, kernelSize, anchor, borderType, borderValue);
}
