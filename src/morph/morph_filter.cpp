// The choice of the path: see morph_filter.h.
#include "morph/morph_filter.h"

namespace {

void copyRegion(const MaskFold& call, const OrvMorphState& state) {
  const Plane<const uint8_t> src{(const uint8_t*)call.src, call.srcStep};
  const Plane<uint8_t> dst{(uint8_t*)call.dst, call.dstStep};
  const size_t bytes = (size_t)call.roi.width * (size_t)(state.channels * morphElementBytes(state.dataType));
  for (int32_t y = 0; y < call.roi.height; ++y) memmove(dst.row(y), src.row(y), bytes);
}

}  // namespace

OrvStatus ORV_VARIANT::filterUnderMask(const MaskFold& call, const OrvMorphState& state) {
  if (state.shapeKind == orvMorphEmpty) copyRegion(call, state);
  else foldUnderMask(call, state);
  return orvStatusOk;
}
