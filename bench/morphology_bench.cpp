// Erosion and what is composed of it, by kinds of masks.
#include "bench.h"

namespace {

using Mask = std::vector<uint8_t>;

Mask full(int size) { return Mask((size_t)(size * size), 1); }
Mask disc(int size) {
  Mask mask;
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) {
      const int dx = 2 * x - size + 1, dy = 2 * y - size + 1;
      mask.push_back(dx * dx + dy * dy <= size * size);
    }
  return mask;
}
Mask cross(int size) {
  Mask mask;
  for (int i = 0; i < size * size; ++i) mask.push_back(i % size == size / 2 || i / size == size / 2);
  return mask;
}
Mask checks(int size) {
  Mask mask;
  for (int i = 0; i < size * size; ++i) mask.push_back((i % size + i / size) % 2 == 0);
  return mask;
}

template <class T>
using Filter = OrvStatus (*)(const T*, int32_t, T*, int32_t, OrvSize, OrvBorderType, T, const OrvMorphState*, uint8_t*);

// The record of a mask and the scratch of its filters.
struct Prepared {
  std::shared_ptr<uint8_t> state, buffer;
  template <class Size, class Init>
  Prepared(const bench::Frame& f, int32_t width, Size size, Init init, const Mask& mask) {
    const auto side = (int32_t)lround(sqrt((double)mask.size()));
    int32_t stateBytes = 0, bufferBytes = 0;
    size(width, {side, side}, &stateBytes, &bufferBytes);
    state = f.scratch(stateBytes), buffer = f.scratch(bufferBytes);
    init(width, mask.data(), {side, side}, (OrvMorphState*)(void*)state.get(), buffer.get());
  }
  const OrvMorphState* record() const { return (const OrvMorphState*)(const void*)state.get(); }
};

template <class T, class Size, class Init>
bool add(const char* name, int channels, Filter<T> filter, Size size, Init init, const char* maskName, const Mask& mask,
         OrvBorderType border = orvBorderRepl) {
  return bench::add(std::string(name) + "/" + maskName, {(int)sizeof(T) * channels}, [=](const bench::Frame& f) {
    const int around = border == orvBorderRepl ? 0 : 16;
    auto src = f.image<T>(channels, around), dst = f.image<T>(channels);
    const Prepared p(f, f.roi.width, size, init, mask);
    return [=] { filter(src.data, src.step, dst.data, dst.step, f.roi, border, T(), p.record(), p.buffer.get()); };
  });
}

#define ERODE(tag, T, C, name, mask, ...)                                                      \
  add<T>("orviErodeBorder_" #tag, C, orviErodeBorder_##tag, orviMorphologyBorderGetSize_##tag, \
         orviMorphologyBorderInit_##tag, name, mask, ##__VA_ARGS__)

const bool lines[] = {
    ERODE(8u_C1R, uint8_t, 1, "full:3", full(3)),
    ERODE(8u_C1R, uint8_t, 1, "full:15", full(15)),
    ERODE(8u_C1R, uint8_t, 1, "full:31", full(31)),
    ERODE(8u_C1R, uint8_t, 1, "full:3/in memory", full(3), orvBorderInMem),
    ERODE(8u_C1R, uint8_t, 1, "full:15/in memory", full(15), orvBorderInMem),
    ERODE(8u_C1R, uint8_t, 1, "cross:3", cross(3)),
    ERODE(8u_C1R, uint8_t, 1, "cross:3/in memory", cross(3), orvBorderInMem),
    ERODE(8u_C1R, uint8_t, 1, "cross:15", cross(15)),
    ERODE(8u_C1R, uint8_t, 1, "disc:5", disc(5)),
    ERODE(8u_C1R, uint8_t, 1, "disc:15", disc(15)),
    ERODE(8u_C1R, uint8_t, 1, "disc:31", disc(31)),
    ERODE(8u_C1R, uint8_t, 1, "checks:7", checks(7)),
    ERODE(8u_C3R, uint8_t, 3, "full:3", full(3)),
    ERODE(8u_C3R, uint8_t, 3, "disc:5", disc(5)),
    ERODE(8u_C4R, uint8_t, 4, "full:3", full(3)),
    ERODE(8u_C4R, uint8_t, 4, "disc:5", disc(5)),
    ERODE(16u_C1R, uint16_t, 1, "full:3", full(3)),
    ERODE(16u_C1R, uint16_t, 1, "disc:5", disc(5)),
    ERODE(16s_C1R, int16_t, 1, "disc:5", disc(5)),
    ERODE(32f_C1R, float, 1, "full:3", full(3)),
    ERODE(32f_C1R, float, 1, "disc:5", disc(5)),
    ERODE(32f_C3R, float, 3, "disc:5", disc(5)),
    ERODE(32f_C4R, float, 4, "disc:5", disc(5)),
};

// Packed bits: a byte of the drawn picture holds eight pixels.
bool addBits(const char* maskName, const Mask& mask) {
  return bench::add(std::string("orviErodeBorder_1u_C1R/") + maskName, {1}, [=](const bench::Frame& f) {
    auto src = f.image<uint8_t>(), dst = f.image<uint8_t>();
    const Prepared p(f, f.roi.width, orviMorphologyBorderGetSize_1u_C1R, orviMorphologyBorderInit_1u_C1R, mask);
    return [=] {
      orviErodeBorder_1u_C1R(src.data, src.step, 3, dst.data, dst.step, 1, f.roi, orvBorderRepl, 0, p.record(),
                             p.buffer.get());
    };
  });
}
const bool bitLines[] = {addBits("full:3", full(3)), addBits("cross:3", cross(3)), addBits("disc:5", disc(5)),
                         addBits("full:15", full(15))};

}  // namespace
