// Benchmark lines: one a function and size, each with the time of a call, nanoseconds a pixel, and the figure to quote,
// units: the time of the call divided by the time of memcpy of its source image, both the least of many runs that take
// turns. Work of a family is registered like this:
//
//   static const bool lines = bench::add("orviAbsDiff_8u_C1R", {1, bench::threaded}, [](const bench::Frame& f) {
//     auto a = f.image<uint8_t>(), b = f.image<uint8_t>(), d = f.image<uint8_t>();
//     return [=] { orviAbsDiff_8u_C1R(a.data, a.step, b.data, b.step, d.data, d.step, f.roi); };
//   });
#pragma once
#include <math.h>
#include <stdint.h>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>
#include "orvcv.h"

namespace bench {

// An image for the length of a benchmark; copies share the memory.
template <class T>
struct Picture {
  std::shared_ptr<T> memory;
  T* data = nullptr;
  int32_t step = 0;
};

// Memory for one line, 64-byte aligned, every page touched.
std::shared_ptr<void> allocate(size_t bytes);

// One pixel of a drawn photograph, 0..1: soft shapes, hard edges, texture and sensor noise.
float scene(int x, int y, int channel);

// The size that a line works on.
struct Frame {
  OrvSize roi;

  // An image of the size (and `border` pixels around it), filled with the photograph: over the range of an integer type
  // up to `most`, 0..255 in floats.
  template <class T>
  Picture<T> image(int channels = 1, int border = 0, float most = 0) const {
    const int width = (roi.width + 2 * border) * channels, height = roi.height + 2 * border;
    Picture<T> p;
    p.memory = std::static_pointer_cast<T>(allocate((size_t)width * (size_t)height * sizeof(T)));
    p.step = width * (int32_t)sizeof(T);
    if (most == 0)
      most = std::is_integral<T>::value && sizeof(T) == 2 ? (std::is_signed<T>::value ? 32767.f : 65535.f) : 255.f;
    if (std::is_same<T, int8_t>::value) most = 127.f;
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        p.memory.get()[(size_t)y * (size_t)width + (size_t)x] = (T)(most * scene(x / channels, y, x % channels));
    p.data = p.memory.get() + (size_t)border * (size_t)width + (size_t)(border * channels);
    return p;
  }
  // A byte mask, about half set, in runs.
  Picture<uint8_t> mask() const;
  // Scratch memory.
  std::shared_ptr<uint8_t> scratch(int32_t bytes) const;
};

enum Threads { single, threaded };

struct Options {
  int bytesPerPixel;                // of the source image: what memcpy copies
  Threads threads = single;         // threaded: also lines with two threads, and the largest size
  std::vector<OrvSize> sizes = {};  // where the usual ones say little
  int images = 1;                   // that a call works on, one after the other: the time is that of one
};

bool add(const std::string& name, Options options, std::function<std::function<void()>(const Frame&)> prepare);

}  // namespace bench
