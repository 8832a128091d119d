// The choice of the path: see morph_filter.h.
#include "morph/morph_filter.h"
#include "morph/rank_region.h"

namespace {

void copyRegion(const MaskFold& call, const OrvMorphState& state) {
  const Plane<const uint8_t> src{(const uint8_t*)call.src, call.srcStep};
  const Plane<uint8_t> dst{(uint8_t*)call.dst, call.dstStep};
  const size_t bytes = (size_t)call.roi.width * (size_t)(state.channels * morphElementBytes(state.dataType));
  for (int32_t y = 0; y < call.roi.height; ++y) memmove(dst.row(y), src.row(y), bytes);
}

// Rectangles that hold their anchor go by rows and columns, if the scratch memory allows.
bool filterRectangle(const MaskFold& call, const OrvMorphState& state) {
  if (state.shapeKind != orvMorphRectangle) return false;
  const OrvMorphShape box = readMorphShape(state);
  if (box.boxAnchorX < 0 || box.boxAnchorX >= box.boxWidth) return false;
  if (box.boxAnchorY < 0 || box.boxAnchorY >= box.boxHeight) return false;
  return foldRectangle(call, state.dataType, state.channels, {box.boxWidth, box.boxHeight},
                       {box.boxAnchorX, box.boxAnchorY});
}

}  // namespace

void ORV_VARIANT::filterUnderMask(const MaskFold& call, const OrvMorphState& state) {
  if (state.shapeKind == orvMorphEmpty) copyRegion(call, state);
  else if (!filterRectangle(call, state)) foldUnderMask(call, state);
}
