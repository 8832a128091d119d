// Morphology with replicated borders: flat masks with a record, gray masks.
#include "bench.h"

namespace {

std::vector<uint8_t> disc(int side) {
  std::vector<uint8_t> mask;
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) {
      const int dx = 2 * x - side + 1, dy = 2 * y - side + 1;
      mask.push_back(dx * dx + dy * dy <= side * side);
    }
  return mask;
}

bool flat(const std::string& name, const std::vector<uint8_t>& mask, int side) {
  return bench::add("orviErodeBorderReplicate_8u_C1R/" + name + std::to_string(side), {1}, [=](const bench::Frame& f) {
    auto src = f.image<uint8_t>(), dst = f.image<uint8_t>();
    int32_t bytes = 0;
    orviMorphologyGetSize_8u_C1R(f.roi.width, mask.data(), {side, side}, &bytes);
    const auto block = f.scratch(bytes);
    auto* const state = (OrvMorphState*)(void*)block.get();
    orviMorphologyInit_8u_C1R(f.roi.width, mask.data(), {side, side}, {side / 2, side / 2}, state);
    return [=] {
      orviErodeBorderReplicate_8u_C1R(src.data, src.step, dst.data, dst.step, f.roi, orvBorderRepl,
                                      (OrvMorphState*)(void*)block.get());
    };
  });
}

template <class T, class W>
bool gray(const char* name, OrvStatus (*init)(OrvMorphGrayState*, OrvSize, const W*, OrvSize, OrvPoint),
          OrvStatus (*erode)(const T*, int32_t, T*, int32_t, OrvSize, OrvBorderType, OrvMorphGrayState*), int side) {
  return bench::add(std::string(name) + "/mask:" + std::to_string(side), {(int)sizeof(T)}, [=](const bench::Frame& f) {
    auto src = f.image<T>(), dst = f.image<T>();
    const auto block = f.scratch(4 * side * side + 32);
    std::vector<W> weights;
    for (int i = 0; i < side * side; ++i) weights.push_back((W)(i % 7));
    init((OrvMorphGrayState*)(void*)block.get(), f.roi, weights.data(), {side, side}, {side / 2, side / 2});
    return [=] {
      erode(src.data, src.step, dst.data, dst.step, f.roi, orvBorderRepl, (OrvMorphGrayState*)(void*)block.get());
    };
  });
}

const bool lines = [] {
  bool all = true;
  for (const int side : {3, 5, 15}) {
    all &= flat("full:", std::vector<uint8_t>((size_t)(side * side), 1), side);
    all &= flat("disc:", disc(side), side);
  }
  for (const int side : {3, 5}) {
    all &= gray("orviGrayErodeBorder_8u_C1R", orviMorphGrayInit_8u_C1R, orviGrayErodeBorder_8u_C1R, side);
    all &= gray("orviGrayErodeBorder_32f_C1R", orviMorphGrayInit_32f_C1R, orviGrayErodeBorder_32f_C1R, side);
  }
  return all;
}();

}  // namespace
