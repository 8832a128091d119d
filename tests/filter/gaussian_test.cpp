// Gaussian smoothing: both families against their plain form, with memory of exactly the reported sizes.
#include "filter/fixed_cases.h"
#include "reference/gaussian.h"

using namespace test;

namespace {

// What a case draws: the kernel and the border. A single row has none beside it, also where flags say so.
struct Case {
  int32_t size = 3;
  float sigma = 1;
  OrvBorderType border = 0;
  bool single = false;

  // One of the kinds, with flags of `sides`.
  Margin draw(Random& r, const Shape& shape, const std::vector<int>& kinds, int sides) {
    const int sizes[] = {3, 3, 5, 5, 7, 9, 11, 15, 21, 31, 37};
    size = sizes[r.in(0, quick() ? 6 : 10)];
    const float sigmas[] = {0.1f, 0.35f, 0.8f, 1.f, (float)size / 6.f, (float)size / 3.f, 50.f};
    sigma = sigmas[r.in(0, 6)];
    border = someBorder(r, kinds) & (15 | sides);
    single = shape.height == 1 && (border & 15) != orvBorderConst;
    Margin margin = marginOf(border, size / 2);
    if (single) margin.top = margin.bottom = 0;
    return margin;
  }
  int rowBorder() const { return single ? (int)orvBorderRepl : border; }
};

// The record as Init makes it must hold the told fields and taps.
template <class Tap>
void checkRecord(const Guarded& memory, const Case& c, OrvDataType type, int shift, const std::vector<Tap>& taps) {
  const int32_t want[] = {c.size, 20, type, c.border, shift};
  CHECK(memory.intact() && memcmp(memory.data(), want, sizeof want) == 0, "fields of the record");
  const auto address = ((uintptr_t)memory.data() + 20 + 15) & ~(uintptr_t)15;
  CHECK(memcmp((const void*)address, taps.data(), taps.size() * sizeof(taps[0])) == 0, "taps of the record");
}

template <class Tap, class T, class Filter>
void sweepPrepared(OrvDataType type, int shift, int channels, Filter filter) {
  Random r(seed());
  Case c;
  std::shared_ptr<Guarded> record;
  T value[3];
  const auto report = [&](OrvSize roi, int32_t* spec, int32_t* buffer) {
    return orviFilterGaussianGetBufferSize(roi, (uint32_t)c.size, type, channels, spec, buffer);
  };
  const auto prepare = [&](Random& draw, const Shape& shape) {
    const Margin margin = c.draw(draw, shape, {orvBorderConst, orvBorderRepl, orvBorderInMem}, 240);
    const OrvSize roi = {shape.width, shape.height};
    for (T& v : value) v = randomElement<T>(draw, false);
    int32_t specSize, bufferSize;
    CHECK(report(roi, &specSize, &bufferSize) == orvStatusOk);
    record = std::make_shared<Guarded>((size_t)specSize, true, (size_t)draw.in(0, 17));
    const Guarded buffer((size_t)bufferSize, true, 3);
    CHECK(orviFilterGaussianInit(roi, (uint32_t)c.size, c.sigma, c.border, type, channels,
                                 (OrvFilterGaussianSpec*)(void*)record->data(), buffer.data()) == orvStatusOk);
    return margin;
  };
  const auto plain = [&](const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, const T* border,
                         const OrvFilterGaussianSpec*, uint8_t*) {
    const auto taps = reference::gaussianTaps<Tap>(c.size, c.sigma, shift);
    checkRecord(*record, c, type, shift, taps);
    reference::gaussian(src, srcStep, dst, dstStep, roi, channels, c.border, c.rowBorder(), border, taps, shift);
  };
  steerThreads(1);  // the smallest buffers
  sweepShapes("prepared", filter, plain, repeated(4), r, around(In<T>(channels), prepare), Out<T>(channels), Roi(),
              Value<const T*>({value}),
              DrawnBy<OrvFilterGaussianSpec*>([&](Random&) { return (OrvFilterGaussianSpec*)(void*)record->data(); }),
              Scratch([&](OrvSize roi, int32_t* bytes) {
                int32_t spec;
                return report(roi, &spec, bytes);
              }));
}

// Both forms of a type with its fixed-point scale; the one of one channel takes the border value itself.
template <class Tap, class T, class Three>
void sweepPrepared(OrvDataType type, int shift,
                   OrvStatus (*one)(const T*, int32_t, T*, int32_t, OrvSize, T, const OrvFilterGaussianSpec*, uint8_t*),
                   Three three) {
  sweepPrepared<Tap, T>(type, shift, 1,
                        [=](auto src, auto srcStep, auto dst, auto dstStep, auto roi, auto value, auto... rest) {
                          return one(src, srcStep, dst, dstStep, roi, *value, rest...);
                        });
  sweepPrepared<Tap, T>(type, shift, 3, three);
}

}  // namespace

TEST(preparedFilters) {
  sweepPrepared<int16_t>(orvData8u, 12, orviFilterGaussianBorder_8u_C1R, orviFilterGaussianBorder_8u_C3R);
  sweepPrepared<uint16_t>(orvData16u, 15, orviFilterGaussianBorder_16u_C1R, orviFilterGaussianBorder_16u_C3R);
  sweepPrepared<int16_t>(orvData16s, 15, orviFilterGaussianBorder_16s_C1R, orviFilterGaussianBorder_16s_C3R);
  sweepPrepared<float>(orvData32f, 0, orviFilterGaussianBorder_32f_C1R, orviFilterGaussianBorder_32f_C3R);
}

TEST(floatFilter) {
  const std::vector<int> kinds = {orvBorderConst, orvBorderRepl, orvBorderWrap, orvBorderMirr, orvBorderMirrR};
  Random r(seed());
  Case c;
  const auto draw = [&](Random& d, const Shape& shape) { return c.draw(d, shape, kinds, 48); };
  const auto plain = [&](const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roi, int32_t size,
                         float sigma, OrvBorderType border, float value, uint8_t*) {
    reference::gaussian(src, srcStep, dst, dstStep, roi, 1, border & 15, c.rowBorder(), &value,
                        reference::gaussianTaps<float>(size, sigma, 0), 0);
  };
  steerThreads(1);
  sweepShapes(
      "orviFilterGaussBorder_32f_C1R", orviFilterGaussBorder_32f_C1R, plain, repeated(4), r, around(In<float>(), draw),
      Out<float>(), Roi(), The(c.size), The(c.sigma), The(c.border), AnyPixel<float>(),
      Scratch([&](OrvSize roi, int32_t* bytes) { return orviFilterGaussGetBufferSize_32f_C1R(roi, c.size, bytes); }));
}

// Sizes worked by hand: 100 x 50, one thread.
TEST(sizes) {
  steerThreads(1);
  const auto check = [](uint32_t kernel, OrvDataType type, int wantSpec, int wantBuffer) {
    int32_t spec = -1, buffer = -1;
    orviFilterGaussianGetBufferSize({100, 50}, kernel, type, type == orvData32f ? 3 : 1, &spec, &buffer);
    CHECK(spec == wantSpec && buffer == wantBuffer, "type %d: %d %d", (int)type, (int)spec, (int)buffer);
  };
  // 8u C1, K 5: rows 10 * 224 + 64 + (104 * 4 + 16) * 2 = 3168; row pipeline 32 + 80 + 292 = 404; column 32 + 80 +
  // 1232 = 1344; pointers 112
  check(5, orvData8u, (8 / 4 << 3) + 36, 3168 + 404 + 32 + 1344 + 32 + 112);
  // 32f C3, K 3: a = 312, 3 * 4 * a + 32 + 6 * 4 * a + 64; row 32 + 48 + 608; column 32; pointers 80
  check(3, orvData32f, (1 << 4) + 32, 3744 + 32 + 7488 + 64 + 688 + 32 + 32 + 32 + 80);
  // 16u C1, K 7: b = 114, d = 112: 14 * 224 + 64 + (112 * 6 + 16) * 2; row 48 * 7 + 80; column 32; pointers 144
  check(7, orvData16u, (2 << 3) + 36, 3136 + 64 + 1376 + 416 + 32 + 32 + 32 + 144);
  int32_t size = -1;
  orviFilterGaussGetBufferSize_32f_C1R({100, 50}, 5, &size);
  // 112 * 20 + 32 + 32 + 432 * 10 + 64; row 32 + 80 + 720; column 32; pointers 112
  CHECK(size == 2240 + 32 + 32 + 4320 + 64 + 832 + 32 + 32 + 32 + 112, "%d", (int)size);
}

TEST(statusesOfTheFilter) {
  alignas(16) uint8_t spec[128];
  uint8_t buffer[1 << 13];
  const uint16_t value[3] = {1, 2, 3};
  auto* const record = (OrvFilterGaussianSpec*)(void*)spec;
  CHECK(orviFilterGaussianInit({13, 5}, 5, 1, orvBorderConst, orvData16u, 3, record, buffer) == orvStatusOk);
  // The last arguments are fields of the record.
  const auto call = [&](const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roi,
                        const uint16_t* border, OrvFilterGaussianSpec* to, uint8_t* scratch, int32_t kernelSize,
                        int32_t borderType, int32_t shift) {
    const int32_t fields[] = {kernelSize, 20, orvData16u, borderType, shift};
    memcpy(spec, fields, sizeof fields);
    return orviFilterGaussianBorder_16u_C3R(src, srcStep, dst, dstStep, roi, border, to, scratch);
  };
  // Steps are compared with the row's elements, not its bytes.
  const auto step = [](int position, double value) { return badValue(position, value, orvStatusStep); };
  walkArguments("16u_C3R", call,
                eachOf(Fault::null, {0, 1, 5, 4}) + std::vector<Told>{step(0, 38), step(1, -100), at(2, Fault::height),
                                                                      at(0, Fault::misalignedStep), badValue(6, 4),
                                                                      badValue(7, 256, orvStatusBorder),
                                                                      at(3, Fault::null), badValue(8, 32)},
                In<uint16_t>(3), Out<uint16_t>(3), Roi(), Value<const uint16_t*>({value}),
                Value<OrvFilterGaussianSpec*>({record}), Value<uint8_t*>({buffer}), Value<int32_t>({5}),
                Value<int32_t>({orvBorderConst}), Value<int32_t>({15}));
  std::vector<float> image(40), out(40);
  CHECK(orviFilterGaussianInit({8, 3}, 3, 1, orvBorderRepl, orvData32f, 1, record, buffer) == orvStatusOk);
  CHECK(orviFilterGaussianBorder_32f_C1R(image.data(), 8, out.data(), 8, {8, 3}, 0, record, buffer) == orvStatusOk);
}

TEST(statusesOfTheSetup) {
  const Result<uint8_t> memory(256);
  const Result<int32_t> size;
  const Value<uint32_t> kernel({5});
  const Value<int32_t> type({orvData8u}), channels({1}), border({orvBorderRepl});
  walkArguments(
      "sizes", orviFilterGaussianGetBufferSize,
      pointersThenSizes({5, 4}, 0) + std::vector<Told>{badValue(1, 6), badValue(2, orvData64f, orvStatusDataType),
                                                       badValue(3, 4, orvStatusChannelCount)},
      Roi(), kernel, type, channels, size, size);
  const auto init = [](OrvSize roi, uint32_t k, float sigma, int32_t kind, int32_t data, int32_t c, uint8_t* spec,
                       uint8_t* buffer) {
    return orviFilterGaussianInit(roi, k, sigma, kind, data, c, (OrvFilterGaussianSpec*)(void*)spec, buffer);
  };
  walkArguments(
      "init", init,
      pointersThenSizes({6, 7}, 0) + std::vector<Told>{badValue(1, 6), badValue(4, orvData64f, orvStatusDataType),
                                                       badValue(5, 4, orvStatusChannelCount), badValue(2, 0),
                                                       badValue(3, orvBorderWrap, orvStatusBorder)},
      Roi(), kernel, Value<float>({1}), border, type, channels, memory, memory);
  // Steps count elements here too.
  walkArguments("orviFilterGaussBorder_32f_C1R", orviFilterGaussBorder_32f_C1R,
                pointersThenSizes({0, 1, 7}, 2) +
                    std::vector<Told>{badValue(0, 12, orvStatusStep), badValue(1, 12, orvStatusStep), badValue(3, 1),
                                      badValue(5, orvBorderInMem), badValue(5, orvBorderMirr | orvBorderInMemLeft)},
                In<float>(), Out<float>(), Roi(), Value<int32_t>({5}), Value<float>({1}),
                Value<int32_t>({orvBorderMirr}), Value<float>({0}), Scratch([](OrvSize roi, int32_t* bytes) {
                  return orviFilterGaussGetBufferSize_32f_C1R(roi, 5, bytes);
                }));
}
