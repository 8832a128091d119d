// The Harris response against its definition: windows, filters, every border; sizes and statuses.
#include "framework/sweep.h"
#include "reference/tensor.h"

using namespace test;

namespace {

struct Arguments {
  const void* src;
  int32_t srcStep;
  float* dst;
  int32_t dstStep;
  OrvSize roi;
  int32_t filter, mask, window, border;
  uint8_t* buffer;
  float k, scale, value;
};

template <class T>
OrvStatus run(const Arguments& a) {
  if constexpr (sizeof(T) == 1)
    return orviHarrisCorner_8u32f_C1R((const uint8_t*)a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.filter, a.mask,
                                      a.window, a.border, (uint8_t)a.value, a.buffer, a.k, a.scale);
  else
    return orviHarrisCorner_32f_C1R((const float*)a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.filter, a.mask, a.window,
                                    a.border, a.buffer, a.k, a.scale, a.value);
}

template <class T>
reference::Tensor plainTensor(const Image<T>& src, OrvSize roi, const Arguments& a) {
  using R = std::conditional_t<std::is_same<T, float>::value, float, int16_t>;
  const int kind = (a.border & 7) == orvBorderInMem ? orvBorderConst : a.border & 7;
  const int sides = (a.border & 7) == orvBorderInMem ? 240 : a.border & 240;
  const int half = a.mask / 22;
  return {roi, a.window, kind == orvBorderRepl, sides, [&](int x, int y) {
            const auto pixel = [&](int i, int c) {
              return (R)reference::borderedPixel(src.data(), src.step(), roi, x + c, y - half + i, kind | sides,
                                                 (T)a.value);
            };
            R dx, dy;
            if (a.filter == orvFilterKernelCentralDiff) {
              dx = (R)(pixel(1, 1) - pixel(1, -1)), dy = (R)(pixel(0, 0) - pixel(2, 0));
            } else {
              const auto form = a.filter == orvFilterKernelScharr ? reference::GradientForm::scharr3
                                : half == 2                       ? reference::GradientForm::sobel5
                                                                  : reference::GradientForm::sobel3;
              reference::gradient(form, pixel, &dx, &dy);
            }
            return reference::Derivatives{(float)dx, (float)dy};
          }};
}

template <class T>
void check(Random& r, OrvSize roi, int window, int border) {
  const int filters[] = {orvFilterKernelSobel, orvFilterKernelScharr, orvFilterKernelCentralDiff};
  Arguments a = {};
  a.roi = roi, a.filter = filters[r.in(0, 2)], a.window = window, a.border = border;
  a.mask = a.filter == orvFilterKernelSobel && r.one(2) ? orvMaskSize5x5 : orvMaskSize3x3;
  a.k = 0.04f, a.scale = r.one(2) ? 1.f : 1e-6f, a.value = (float)r.in(0, 255);
  const Context context(std::string(sizeof(T) == 1 ? "8u" : "32f") + " " + std::to_string(roi.width) + "x" +
                        std::to_string(roi.height) + " window " + std::to_string(window) + " border " +
                        std::to_string(border) + " filter " + std::to_string(a.filter) + " mask " +
                        std::to_string(a.mask));
  // readable just as deep as told
  const bool all = (border & 7) == orvBorderInMem;
  const auto depth = [&](int flag, int reach) { return all || border & flag ? reach + a.mask / 22 : 0; };
  const int before = (window - 1) / 2, behind = window / 2;
  Image<T> src(r, roi.width, roi.height, 1,
               {depth(orvBorderInMemLeft, before), depth(orvBorderInMemTop, before), depth(orvBorderInMemRight, behind),
                depth(orvBorderInMemBottom, behind)});
  Image<float> dst(r, roi.width, roi.height, 1);
  src.fill(r, false);
  const reference::Tensor tensor = plainTensor(src, roi, a);
  const auto n = (uint32_t)window;
  const auto f = (float)((double)(n * n * n * n) * (double)a.scale);
  std::vector<float> want;
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width; ++x) {
      float xx, yy, xy;
      tensor.means(x, y, &xx, &yy, &xy);
      want.push_back(reference::harris(xx, yy, xy, a.k, f, x >= (roi.width & ~3)));
    }
  int32_t bytes = 0;
  CHECK(orviHarrisCornerGetBufferSize(roi, a.mask, window, sizeof(T) == 1 ? orvData8u : orvData32f, 1, &bytes) == 0);
  a.src = src.data(), a.srcStep = src.step(), a.dst = dst.data(), a.dstStep = dst.step();
  forEachSetting(false, [&] {
    const Guarded buffer((size_t)bytes, !r.one(4), (size_t)r.in(0, 70));
    a.buffer = buffer.data();
    dst.restore();
    CHECK(run<T>(a) == orvStatusOk);
    CHECK(buffer.intact() && src.unchanged() && dst.onlyRegionChanged(), "written outside");
    for (size_t i = 0; i < want.size(); ++i) {
      const int x = (int)i % roi.width, y = (int)i / roi.width;
      if (!same(dst.at(x, y), want[i])) return fail("%.9g at %d %d, not %.9g", dst.at(x, y), x, y, want[i]);
    }
  });
}

void checkBoth(Random& r, OrvSize roi, int window, int border) {
  check<uint8_t>(r, roi, window, border);
  check<float>(r, roi, window, border);
}

}  // namespace

TEST(everySize) {
  Random r(seed());
  const int kinds[] = {orvBorderConst, orvBorderRepl, orvBorderInMem};
  for (const Shape& shape : shapes())
    checkBoth(r, {shape.width, shape.height}, r.in(1, 6), kinds[r.in(0, 2)] | (r.one(3) ? 0 : r.in(0, 15) * 16));
  for (const int window : {1, 2, 3, 9, 24})
    for (const OrvSize roi : {OrvSize{1, 1}, {1, 7}, {7, 1}, {2, 2}, {33, 21}})
      checkBoth(r, roi, window, r.in(0, 1) | r.in(0, 15) * 16);
}

TEST(everySide) {
  Random r(seed());
  for (int sides = 0; sides < 256; sides += 16)
    for (const int kind : {orvBorderConst, orvBorderRepl, orvBorderInMem})
      for (const int window : {2, 3}) checkBoth(r, {r.in(3, 20), r.in(3, 12)}, window, kind | sides);
}

// Wider than a strip; a narrow scratch of one high region.
TEST(strips) {
  Random r(seed());
  checkBoth(r, {1500, 5}, 3, orvBorderRepl);
  checkBoth(r, {1337, 4}, 4, orvBorderConst | orvBorderInMemTop);
  checkBoth(r, {600, 3}, 1, orvBorderConst);
  checkBoth(r, {700, 9}, 17, orvBorderRepl | orvBorderInMemLeft);
}

// Worked by hand; a region that is one piece, and one whose left strip is the largest.
TEST(sizes) {
  int32_t bytes = 0;
  CHECK(orviHarrisCornerGetBufferSize({4, 4}, orvMaskSize3x3, 3, orvData8u, 1, &bytes) == 0 && bytes == 1696, "%d",
        (int)bytes);
  CHECK(orviHarrisCornerGetBufferSize({1920, 1080}, orvMaskSize3x3, 3, orvData8u, 1, &bytes) == 0 && bytes == 251224,
        "%d", (int)bytes);
  // 32f, 5x5: planes (3 * 32 + 2 * 32) * 7, gradient 4 * (7 + 4) * 7 + 8 * 7, sums 32 * 7 + 1272
  CHECK(orviHarrisCornerGetBufferSize({1, 1}, orvMaskSize5x5, 7, orvData32f, 1, &bytes) == 0 && bytes == 2680, "%d",
        (int)bytes);
  for (const int window : {-1, -93, -100000, 1 << 28, INT32_MAX, INT32_MIN})
    CHECK(orviHarrisCornerGetBufferSize({640, 480}, orvMaskSize3x3, window, orvData8u, 1, &bytes) == orvStatusOk);
}

namespace {

template <class T>
void walk() {
  Random r(seed());
  Image<T> src(r, 9, 7, 1);
  Image<float> dst(r, 9, 7, 1);
  const Guarded buffer(1 << 15, true, 0);
  using Checks = std::vector<Check<Arguments>>;
  Checks checks = {{"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
                   {"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }},
                   {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
                   {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }},
                   {"height", orvStatusSize, [](Arguments& a) { a.roi.height = -1; }},
                   {"dst alignment", orvStatusStepAlign, [](Arguments& a) { a.dstStep += 2; }},
                   {"filter", orvStatusFilterType, [](Arguments& a) { a.filter = 3; }},
                   {"mask", orvStatusMaskSize, [](Arguments& a) { a.mask = 35; }},
                   {"border", orvStatusBorder, [](Arguments& a) { a.border = orvBorderMirr; }},
                   {"window", orvStatusSize, [](Arguments& a) { a.window = 0; }},
                   {"srcStep", orvStatusStep, [](Arguments& a) { a.srcStep = -40; }},
                   {"dstStep", orvStatusStep, [](Arguments& a) { a.dstStep = -36 + a.dstStep % 4; }}};
  if (sizeof(T) > 1) {
    checks.push_back({"in place", orvStatusInPlace, [](Arguments& a) { a.dst = (float*)(uintptr_t)a.src; }});
    checks.insert(checks.begin() + 5, {"src alignment", orvStatusStepAlign, [](Arguments& a) { a.srcStep += 1; }});
  }
  const Arguments valid = {src.data(), src.step(),    dst.data(), dst.step(), {9, 7}, orvFilterKernelSobel, 33, 3,
                           1,          buffer.data(), 0.04f,      1,          0};
  walkChecks<Arguments>(
      valid, checks, [](Arguments& a) { return run<T>(a); }, [&] { return dst.unchanged() && src.unchanged(); });
  Arguments scharr5 = valid;
  scharr5.filter = orvFilterKernelScharr, scharr5.mask = orvMaskSize5x5;
  CHECK(run<T>(scharr5) == orvStatusMaskSize);
}

struct SizeArguments {
  OrvSize roi;
  int32_t mask, window, type, channels;
  int32_t* bytes;
};

}  // namespace

TEST(statuses) {
  walk<uint8_t>();
  walk<float>();
  int32_t bytes = -7;
  walkChecks<SizeArguments>(
      {{9, 5}, 33, 3, orvData8u, 1, &bytes},
      {{"bufferSize", orvStatusNullPtr, [](SizeArguments& a) { a.bytes = nullptr; }},
       {"width", orvStatusSize, [](SizeArguments& a) { a.roi.width = 0; }},
       {"height", orvStatusSize, [](SizeArguments& a) { a.roi.height = 0; }},
       {"mask", orvStatusMaskSize, [](SizeArguments& a) { a.mask = 3; }},
       {"type", orvStatusDataType, [](SizeArguments& a) { a.type = orvData16s; }},
       {"channels", orvStatusChannels, [](SizeArguments& a) { a.channels = 3; }},
       {"window", orvStatusSize, [](SizeArguments& a) { a.window = 0; }}},
      [](SizeArguments& a) {
        return orviHarrisCornerGetBufferSize(a.roi, a.mask, a.window, a.type, a.channels, a.bytes);
      },
      [&] { return bytes == -7; });
}
