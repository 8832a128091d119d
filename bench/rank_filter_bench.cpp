// Rank filters: windows of several sizes.
#include "bench.h"

namespace {

template <class T>
using Filter = OrvStatus (*)(const T*, int32_t, T*, int32_t, OrvSize, OrvSize, OrvPoint, uint8_t*);
using Size = OrvStatus (*)(int32_t, OrvSize, int32_t*);

template <class T>
bool add(const char* name, Filter<T> filter, Size size, int channels, int side) {
  return bench::add(std::string(name) + "/mask:" + std::to_string(side), {(int)sizeof(T) * channels},
                    [=](const bench::Frame& f) -> std::function<void()> {
                      auto src = f.image<T>(channels), dst = f.image<T>(channels);
                      const OrvSize mask = {side, side};
                      int32_t bytes = 0;
                      size(f.roi.width, mask, &bytes);
                      const auto buffer = f.scratch(bytes);
                      return [=] {
                        filter(src.data, src.step, dst.data, dst.step, f.roi, mask, {side / 2, side / 2}, buffer.get());
                      };
                    });
}

#define RANK(type, channels, side)                                                                                   \
  add("orviFilterMinBorderReplicate_" #type, orviFilterMinBorderReplicate_##type, orviFilterMinGetBufferSize_##type, \
      channels, side)

const bool lines = [] {
  bool all = true;
  for (const int side : {3, 5, 15, 31, 101}) {
    all &= RANK(8u_C1R, 1, side) && RANK(8u_C3R, 3, side) && RANK(8u_C4R, 4, side);
    all &= RANK(32f_C1R, 1, side) && RANK(32f_C3R, 3, side) && RANK(32f_C4R, 4, side);
  }
  return all;
}();

}  // namespace
