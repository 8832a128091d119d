// FastN corners over sixteen images in turn: one small image is learnt by the branch predictor.
#include "bench.h"

using bench::Frame;

namespace {

bool add(const char* name, int32_t radius, int32_t arc, int32_t mode) {
  return bench::add(name, {1, bench::single}, [=](const Frame& f) {
    constexpr int count = 16;
    std::vector<bench::Picture<uint8_t>> pictures;
    for (int i = 0; i < count; ++i) {
      pictures.push_back(f.image<uint8_t>());
      for (int y = 0; y < f.roi.height; ++y)
        for (int x = 0; x < f.roi.width; ++x)
          pictures.back().data[y * pictures.back().step + x] =
              (uint8_t)(255 * bench::scene(x + 1931 * i, y + 57 * i, 0));
    }
    auto corner = f.image<uint8_t>(), score = f.image<uint8_t>();
    int32_t bytes = 0;
    orviFastNGetSize(f.roi, radius, arc, 16, mode, orvData8u, 1, &bytes);
    auto state = f.scratch(bytes);
    orviFastNInit(f.roi, radius, arc, 16, 20, mode, orvData8u, 1, state.get());
    orviFastNGetBufferSize(state.get(), f.roi, &bytes);
    auto buffer = f.scratch(bytes);
    return [=, next = 0]() mutable {
      const auto& s = pictures[(size_t)(next++ % count)];
      int32_t found;
      orviFastN_8u_C1R(s.data, s.step, corner.data, corner.step, score.data, score.step, &found, {0, 0}, f.roi,
                       state.get(), buffer.get());
    };
  });
}

const bool lines[] = {
    add("orviFastN_8u_C1R,radius:3,N:9,score", 3, 9, orvFastNCorner | orvFastNScore),
    add("orviFastN_8u_C1R,radius:3,N:9,score,nms", 3, 9, orvFastNCorner | orvFastNScore | orvFastNNms),
    add("orviFastN_8u_C1R,radius:3,N:9,all", 3, 9, orvFastNCorner | orvFastNScore | orvFastNNms | orvFastNOrientation),
    add("orviFastN_8u_C1R,radius:9,N:27,score,nms", 9, 27, orvFastNCorner | orvFastNScore | orvFastNNms),
};

}  // namespace
