// Sixteen different images in turn, for functions that branch on pixels.
#pragma once
#include "bench.h"

namespace bench {

constexpr int turnCount = 16;

// A picture after another, round and round. Copies share the pictures.
template <class T>
struct Turns {
  std::vector<Picture<T>> pictures;
  int turn = 0;
  const Picture<T>& next() { return pictures[(size_t)(turn++ % turnCount)]; }
};

// Windows on the drawn photograph, in bytes' range.
template <class T>
Turns<T> turns(const Frame& f, int channels = 1) {
  Turns<T> all;
  for (int i = 0; i < turnCount; ++i) {
    all.pictures.push_back(f.image<T>(channels, 0, 255));
    const Picture<T>& p = all.pictures.back();
    for (int y = 0; y < f.roi.height; ++y)
      for (int x = 0; x < f.roi.width * channels; ++x)
        p.data[(size_t)y * (size_t)(f.roi.width * channels) + (size_t)x] =
            (T)(255 * scene(x / channels + 211 * i, y + 137 * i, x % channels));
  }
  return all;
}

}  // namespace bench
