// Reconstruction: the domes of a photograph, the holes of a shape image, and a maze.
#include "bench.h"
#include <string.h>

namespace {

template <class T>
using Function = OrvStatus (*)(const T*, int32_t, T*, int32_t, OrvSize, uint8_t*, int32_t);

enum Content { domes, holes, maze };

// Each call starts from a copy of the marker, which is part of the time.
template <class T>
bool add(const char* name, Function<T> function, Content content, int32_t norm) {
  static const char* const texts[] = {"domes", "holes", "maze"};
  const auto prepare = [=](const bench::Frame& f) -> std::function<void()> {
    auto mask = f.image<T>(), marker = f.image<T>(), start = f.image<T>();
    const int w = f.roi.width, h = f.roi.height;
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        T& m = mask.data[y * w + x];
        T& s = start.data[y * w + x];
        const bool rim = x == 0 || y == 0 || x == w - 1 || y == h - 1;
        // the corridor goes down one column and up the next but one
        if (content == maze) m = T(x % 2 == 0 || y == (x % 4 == 1 ? h - 1 : 0) ? 200 : 0);
        if (content == domes) s = m > T(40) ? T(m - T(40)) : T(0);
        if (content == holes) s = rim ? m : T(255);
        if (content == maze) s = x + y == 0 ? m : T(0);
      }
    int32_t bytes = 0;
    orviMorphReconstructGetBufferSize(f.roi, sizeof(T) == 1 ? orvData8u : orvData32f, 1, &bytes);
    const auto buffer = f.scratch(bytes);
    return [=] {
      memcpy(marker.data, start.data, (size_t)marker.step * (size_t)h);
      function(mask.data, mask.step, marker.data, marker.step, f.roi, buffer.get(), norm);
    };
  };
  return bench::add(std::string(name) + "/" + texts[content] + "/norm:" + std::to_string(norm),
                    {(int)sizeof(T), bench::threaded}, prepare);
}

const bool lines = [] {
  bool all = true;
  for (const int32_t norm : {0, 1}) {
    all &= add("orviMorphReconstructDilate_8u_C1IR", orviMorphReconstructDilate_8u_C1IR, domes, norm);
    all &= add("orviMorphReconstructErode_8u_C1IR", orviMorphReconstructErode_8u_C1IR, holes, norm);
  }
  all &= add("orviMorphReconstructDilate_8u_C1IR", orviMorphReconstructDilate_8u_C1IR, maze, 1);
  all &= add("orviMorphReconstructDilate_32f_C1IR", orviMorphReconstructDilate_32f_C1IR, domes, 1);
  return all;
}();

}  // namespace
