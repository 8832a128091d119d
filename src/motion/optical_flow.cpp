// Optical flow of the three element types.
// One body serves both variants.
#include "filter/names.h"
#include "motion/flow_tracker.h"

namespace {

// 8u: windows with 7 fractional bits; the derivatives' gain of 32 is raised to 128 where they are sampled.
struct Flow8u {
  using Pixel = uint8_t;
  using Patch = uint16_t;
  using Gradient = int16_t;
  static constexpr bool converts = false;
  static constexpr double errorScale = 0.0078125;
  static constexpr int32_t fractionBits = 7;

  static OrvStatus copy(Plane<const uint8_t> image, OrvSize size, uint16_t* dst, int32_t step, OrvSize window,
                        OrvPoint32f p, FlowRange& range) {
    return orviCopySubpixIntersect_8u16u_C1R_Sfs(image.data, image.step, size, dst, step, window, p, &range.min,
                                                 &range.max, -fractionBits);
  }
  static OrvStatus range(Plane<const uint8_t> image, OrvSize size, uint16_t* dst, int32_t step, OrvSize window,
                         OrvPoint32f p, FlowRange& range) {
    return ownGetRectSubpix_8u16u_C1R_Sfs(image.data, image.step, size, dst, step, window, p, &range.min, &range.max,
                                          -fractionBits);
  }
  static void derive(Plane<const uint8_t> image, OrvSize size, const FlowWork<uint16_t, int16_t>& work) {
    const auto step = (int32_t)(work.levelStride * (ptrdiff_t)sizeof(int16_t));
    orviFilterScharrVertBorder_8u16s_C1R(image.data, image.step, work.levelX, step, size, orvBorderRepl, 0,
                                         work.scratch);
    orviFilterScharrHorizBorder_8u16s_C1R(image.data, image.step, work.levelY, step, size, orvBorderRepl, 0,
                                          work.scratch);
  }
};

void deriveFloats(Plane<const float> image, OrvSize size, const FlowWork<float, float>& work) {
  const auto step = (int32_t)(work.levelStride * (ptrdiff_t)sizeof(float));
  orviFilterScharrVertBorder_32f_C1R(image.data, image.step, work.levelX, step, size, orvBorderRepl, 0, work.scratch);
  orviFilterScharrHorizBorder_32f_C1R(image.data, image.step, work.levelY, step, size, orvBorderRepl, 0, work.scratch);
}

// 16u: windows of floats, levels converted before they are derived.
struct Flow16u {
  using Pixel = uint16_t;
  using Patch = float;
  using Gradient = float;
  static constexpr bool converts = true;
  static constexpr double errorScale = 1;

  static OrvStatus copy(Plane<const uint16_t> image, OrvSize size, float* dst, int32_t step, OrvSize window,
                        OrvPoint32f p, FlowRange& range) {
    return orviCopySubpixIntersect_16u32f_C1R(image.data, image.step, size, dst, step, window, p, &range.min,
                                              &range.max);
  }
  static OrvStatus range(Plane<const uint16_t> image, OrvSize size, float* dst, int32_t step, OrvSize window,
                         OrvPoint32f p, FlowRange& range) {
    return ownGetRectSubpix_16u32f_C1R(image.data, image.step, size, dst, step, window, p, &range.min, &range.max);
  }
  static void derive(Plane<const uint16_t> image, OrvSize size, const FlowWork<float, float>& work) {
    const auto step = (int32_t)(work.levelStride * (ptrdiff_t)sizeof(float));
    orviConvert_16u32f_C1R(image.data, image.step, work.converted, step, size);
    deriveFloats({work.converted, step}, size, work);
  }
};

struct Flow32f {
  using Pixel = float;
  using Patch = float;
  using Gradient = float;
  static constexpr bool converts = false;
  static constexpr double errorScale = 1;

  static OrvStatus copy(Plane<const float> image, OrvSize size, float* dst, int32_t step, OrvSize window, OrvPoint32f p,
                        FlowRange& range) {
    return orviCopySubpixIntersect_32f_C1R(image.data, image.step, size, dst, step, window, p, &range.min, &range.max);
  }
  static OrvStatus range(Plane<const float> image, OrvSize size, float* dst, int32_t step, OrvSize window,
                         OrvPoint32f p, FlowRange& range) {
    return ownGetRectSubpix_32f_C1R(image.data, image.step, size, dst, step, window, p, &range.min, &range.max);
  }
  static void derive(Plane<const float> image, OrvSize size, const FlowWork<float, float>& work) {
    deriveFloats(image, size, work);
  }
};

}  // namespace

OrvStatus orviOpticalFlowPyrLKInitAlloc_8u_C1R(OrvOptFlowPyrLKState** state, OrvSize roiSize, int32_t winSize,
                                               int32_t hint) {
  return makeFlowState<uint16_t, int16_t>(state, roiSize, winSize, hint, orvData8u,
                                          orviFilterScharrHorizGetBufferSize_8u16s_C1R,
                                          orviFilterScharrVertGetBufferSize_8u16s_C1R);
}

OrvStatus orviOpticalFlowPyrLK_8u_C1R(const OrvPyramid* pyramid1, const OrvPyramid* pyramid2,
                                      const OrvPoint32f* prevPoints, OrvPoint32f* nextPoints, int8_t* status,
                                      float* error, int32_t numPoints, int32_t winSize, int32_t maxLevel,
                                      int32_t maxIter, float threshold, OrvOptFlowPyrLKState* state) {
  return trackPoints<Flow8u>(pyramid1, pyramid2, prevPoints, nextPoints, status, error, numPoints, winSize, maxLevel,
                             maxIter, threshold, state, flowKernelsQ7());
}

OrvStatus orviOpticalFlowPyrLKFree_8u_C1R(OrvOptFlowPyrLKState* state) { return freeFlowState(state); }

OrvStatus orviOpticalFlowPyrLKInitAlloc_16u_C1R(OrvOptFlowPyrLKState** state, OrvSize roiSize, int32_t winSize,
                                                int32_t hint) {
  return makeFlowState<float, float>(state, roiSize, winSize, hint, orvData16u,
                                     orviFilterScharrHorizGetBufferSize_32f_C1R,
                                     orviFilterScharrVertGetBufferSize_32f_C1R);
}

OrvStatus orviOpticalFlowPyrLK_16u_C1R(const OrvPyramid* pyramid1, const OrvPyramid* pyramid2,
                                       const OrvPoint32f* prevPoints, OrvPoint32f* nextPoints, int8_t* status,
                                       float* error, int32_t numPoints, int32_t winSize, int32_t maxLevel,
                                       int32_t maxIter, float threshold, OrvOptFlowPyrLKState* state) {
  return trackPoints<Flow16u>(pyramid1, pyramid2, prevPoints, nextPoints, status, error, numPoints, winSize, maxLevel,
                              maxIter, threshold, state, flowKernelsFloat());
}

OrvStatus orviOpticalFlowPyrLKFree_16u_C1R(OrvOptFlowPyrLKState* state) { return freeFlowState(state); }

OrvStatus orviOpticalFlowPyrLKInitAlloc_32f_C1R(OrvOptFlowPyrLKState** state, OrvSize roiSize, int32_t winSize,
                                                int32_t hint) {
  return makeFlowState<float, float>(state, roiSize, winSize, hint, orvData32f,
                                     orviFilterScharrHorizGetBufferSize_32f_C1R,
                                     orviFilterScharrVertGetBufferSize_32f_C1R);
}

OrvStatus orviOpticalFlowPyrLK_32f_C1R(const OrvPyramid* pyramid1, const OrvPyramid* pyramid2,
                                       const OrvPoint32f* prevPoints, OrvPoint32f* nextPoints, int8_t* status,
                                       float* error, int32_t numPoints, int32_t winSize, int32_t maxLevel,
                                       int32_t maxIter, float threshold, OrvOptFlowPyrLKState* state) {
  return trackPoints<Flow32f>(pyramid1, pyramid2, prevPoints, nextPoints, status, error, numPoints, winSize, maxLevel,
                              maxIter, threshold, state, flowKernelsFloat());
}

OrvStatus orviOpticalFlowPyrLKFree_32f_C1R(OrvOptFlowPyrLKState* state) { return freeFlowState(state); }
