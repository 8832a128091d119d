// Line detection against its plain forms; sizes, statuses and cases worked by hand.
#include "features/roles.h"
#include "reference/hough.h"

using namespace test;

namespace {

// A few straight lines and noise; or, now and then, all of the image.
void drawLines(Random& r, Image<uint8_t>& image, int width, int height) {
  const int share = r.one(6) ? 1 : r.in(5, 200);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) image.set(x, y, (uint8_t)(r.one(share) ? r.in(1, 255) : 0));
  for (int i = r.in(0, 4); i > 0; --i) {
    const float angle = (float)r.in(0, 628) * .01f;
    const int x = r.in(0, width - 1), y = r.in(0, height - 1);
    for (int k = 0; k < width + height; ++k) {
      const int u = x + (int)lrintf((float)k * cosf(angle)), v = y + (int)lrintf((float)k * sinf(angle));
      if (u >= 0 && v >= 0 && u < width && v < height && !r.one(9)) image.set(u, v, 255);
    }
  }
  image.keep();
}

OrvPointPolar someDelta(Random& r, OrvSize roi) {
  const float rhos[] = {1, 1, .5f, 2.5f, .013f, (float)(roi.width + roi.height)};
  const float thetas[] = {.0174533f, .0174533f, .05f, .3f, 2, 3.14159f};
  return {std::min(rhos[r.in(0, 5)], (float)(roi.width + roi.height)), thetas[r.in(0, 5)]};
}

std::vector<Shape> lineShapes() {
  std::vector<Shape> list = shapes();
  if (quick()) list.resize(list.size() / 2);
  for (const Shape more : {Shape{90, 70}, Shape{61, 150}, Shape{520, 30}}) list.push_back(more);
  return list;
}

}  // namespace

TEST(lines) {
  Random r(seed());
  for (const Shape& shape : lineShapes()) {
    const OrvSize roi = {shape.width, shape.height};
    const OrvPointPolar delta = someDelta(r, roi);
    const int32_t threshold = r.in(1, r.one(2) ? 4 : 20), most = r.one(2) ? r.in(1, 4) : 500;
    const Context context(detail::describe("orviHoughLine", shape) + " rho " + std::to_string(delta.rho) + " theta " +
                          std::to_string(delta.theta));
    Image<uint8_t> src(r, roi.width, roi.height, 1);
    drawLines(r, src, roi.width, roi.height);
    const float span = (float)(roi.width + roi.height);
    const float low = (float)r.in(-1000, 800) * .001f * span, theta = (float)r.in(-10, 30) * .1f;
    const OrvPointPolar part[2] = {{low, theta},
                                   {low + (float)r.in(0, 700) * .001f * span, theta + (float)r.in(0, 20) * .1f}};
    Buffer buffer([&](OrvSize s, int32_t* bytes) { return orviHoughLineGetSize_8u_C1R(s, delta, most, bytes); });
    buffer.prepare(r, shape);
    for (const bool limited : {false, true}) {
      const auto expected =
          reference::houghLines(src.data(), src.step(), roi, delta, threshold, most, limited ? part : nullptr);
      forEachSetting(false, [&] {
        std::vector<OrvPointPolar> lines((size_t)most + 1, {-7, -7});
        OrvPointPolar bounds[2] = {part[0], part[1]};
        int32_t count = -7;
        const OrvStatus status =
            limited ? orviHoughLine_Region_8u32f_C1R(src.data(), src.step(), roi, lines.data(), bounds, most, &count,
                                                     delta, threshold, buffer.memory->data())
                    : orviHoughLine_8u32f_C1R(src.data(), src.step(), roi, delta, threshold, lines.data(), most, &count,
                                              buffer.memory->data());
        CHECK(status == orvStatusOk && src.unchanged());
        buffer.verify(0);
        if (count != (int)expected.size()) return fail("%d lines, not %d", count, (int)expected.size());
        for (size_t i = 0; i < expected.size(); ++i)
          if (lines[i].rho != expected[i].rho || lines[i].theta != expected[i].theta)
            return fail("line %d differs", (int)i);
        CHECK(lines[expected.size()].rho == -7);
        CHECK(!limited || (bounds[0].theta >= 0 && bounds[1].theta <= 3.14159f));
      });
    }
  }
}

TEST(segments) {
  Random r(seed());
  for (const Shape& shape : lineShapes()) {
    const OrvSize roi = {shape.width, shape.height};
    OrvPointPolar delta = someDelta(r, roi);
    if (r.one(4)) delta.rho = 12000;  // one cell or none, and counts of 32 bits
    const int32_t threshold = r.in(1, 12), length = r.in(0, 15), gap = r.in(0, 4), most = r.one(2) ? r.in(0, 3) : 500;
    const Context context(detail::describe("orviHoughProbLine_8u32f_C1R", shape) + " rho " + std::to_string(delta.rho) +
                          " theta " + std::to_string(delta.theta));
    Image<uint8_t> src(r, roi.width, roi.height, 1);
    drawLines(r, src, roi.width, roi.height);
    const auto all = reference::houghSegments(src.data(), src.step(), roi, delta, threshold, length, gap);
    int32_t stateBytes = 0;
    Buffer buffer(
        [&](OrvSize s, int32_t* bytes) { return orviHoughProbLineGetSize_8u_C1R(s, delta, &stateBytes, bytes); });
    buffer.prepare(r, shape);
    const Guarded memory((size_t)stateBytes, true, (size_t)r.in(0, 9));
    auto* const state = (OrvHoughProbState*)(void*)memory.data();
    CHECK(orviHoughProbLineInit_8u32f_C1R(roi, delta, 3, state) == orvStatusOk && memory.intact());
    const size_t kept = std::min(all.size(), (size_t)most);
    forEachSetting(false, [&] {
      std::vector<int32_t> lines(4 * (kept + 1), -7);
      int32_t count = -7;
      const OrvStatus status = orviHoughProbLine_8u32f_C1R(src.data(), src.step(), roi, threshold, length, gap,
                                                           lines.data(), most, &count, buffer.memory->data(), state);
      CHECK(status == (all.size() > kept ? orvStatusLinesFullWarn : orvStatusOk), "status %d", status);
      CHECK(src.unchanged());
      buffer.verify(0);
      if (count != (int)kept) return fail("%d segments, not %d", count, (int)kept);
      for (size_t i = 0; i < 4 * kept; ++i)
        if (lines[i] != all[i / 4][i % 4]) return fail("segment %d differs", (int)i / 4);
      CHECK(lines[4 * kept] == -7);
    });
  }
}

TEST(sizes) {
  const OrvPointPolar delta = {1, .0174533f};
  int32_t bytes = -1, state = -1;
  CHECK(orviHoughLineGetSize_8u_C1R({100, 50}, delta, 7, &bytes) == orvStatusOk);
  CHECK(bytes == 50 * 464 + 16 * 7 + 8 * 180 + 16 * 301 + 288, "%d", bytes);
  CHECK(orviHoughLineGetSize_8u_C1R({30000, 30000}, delta, 7, &bytes) == orvStatusSizeOverflowWarn);
  CHECK(bytes == (int32_t)(30000u * 120064u + 16 * 7 + 8 * 180 + 16 * 120001 + 288), "%d", bytes);
  CHECK(orviHoughProbLineGetSize_8u_C1R({100, 50}, delta, &state, &bytes) == orvStatusOk);
  CHECK(state == 8 * 180 + 16 && bytes == 9 * 5000 + 4 * 301 * 180, "%d %d", state, bytes);
  for (const OrvPointPolar& bad : {OrvPointPolar{0, 1}, OrvPointPolar{1, -1}, OrvPointPolar{NAN, 1}}) {
    CHECK(orviHoughLineGetSize_8u_C1R({0, 1}, bad, 1, nullptr) == orvStatusNullPtr);
    CHECK(orviHoughLineGetSize_8u_C1R({0, 1}, bad, 1, &bytes) == orvStatusSize);
    CHECK(orviHoughLineGetSize_8u_C1R({1, 1}, bad, 1, &bytes) == orvStatusBadArg);
    CHECK(orviHoughProbLineGetSize_8u_C1R({1, 0}, bad, &state, nullptr) == orvStatusNullPtr);
    CHECK(orviHoughProbLineGetSize_8u_C1R({1, 0}, bad, nullptr, &bytes) == orvStatusNullPtr);
    CHECK(orviHoughProbLineGetSize_8u_C1R({1, 0}, bad, &state, &bytes) == orvStatusSize);
    CHECK(orviHoughProbLineGetSize_8u_C1R({1, 1}, bad, &state, &bytes) == orvStatusBadArg);
    CHECK(orviHoughProbLineInit_8u32f_C1R({1, 0}, bad, 0, nullptr) == orvStatusSize);
    CHECK(orviHoughProbLineInit_8u32f_C1R({1, 1}, bad, 0, nullptr) == orvStatusBadArg);
  }
  CHECK(orviHoughProbLineInit_8u32f_C1R({1, 1}, delta, 0, nullptr) == orvStatusNullPtr);
}

namespace {

struct Arguments {
  const uint8_t* src;
  int32_t step;
  OrvSize roi;
  OrvPointPolar delta;
  int32_t threshold;
  OrvPointPolar* lines;
  OrvPointPolar* part;
  int32_t most;
  int32_t* count;
  uint8_t* buffer;
};

}  // namespace

TEST(statuses) {
  std::vector<uint8_t> src(64, 1), buffer(1 << 20);
  OrvPointPolar lines[4] = {{-7, 0}}, part[2] = {{-9, -1}, {9, 9}}, inverted[2] = {{0, 1}, {0, .5f}};
  int32_t count = -7;
  const Arguments valid = {src.data(), 8, {8, 8}, {1, .1f}, 3, lines, part, 4, &count, buffer.data()};
  std::vector<Check<Arguments>> checks = {{"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
                                          {"lines", orvStatusNullPtr, [](Arguments& a) { a.lines = nullptr; }},
                                          {"count", orvStatusNullPtr, [](Arguments& a) { a.count = nullptr; }},
                                          {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
                                          {"step", orvStatusStep, [](Arguments& a) { a.step = 0; }},
                                          {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }},
                                          {"height", orvStatusSize, [](Arguments& a) { a.roi.height = -1; }},
                                          {"most", orvStatusSize, [](Arguments& a) { a.most = 0; }},
                                          {"no rho", orvStatusBadArg, [](Arguments& a) { a.delta.rho = 0; }},
                                          {"rho", orvStatusBadArg, [](Arguments& a) { a.delta.rho = 16.5f; }},
                                          {"no theta", orvStatusBadArg, [](Arguments& a) { a.delta.theta = 0; }},
                                          {"theta", orvStatusBadArg, [](Arguments& a) { a.delta.theta = 3.1416f; }},
                                          {"threshold", orvStatusBadArg, [](Arguments& a) { a.threshold = 0; }}};
  const auto untouched = [&] { return count == -7 && lines[0].rho == -7 && part[1].theta == 9; };
  walkChecks<Arguments>(
      valid, checks,
      [](Arguments& a) {
        return orviHoughLine_8u32f_C1R(a.src, a.step, a.roi, a.delta, a.threshold, a.lines, a.most, a.count, a.buffer);
      },
      untouched);
  const auto region = [](const Arguments& a) {
    return orviHoughLine_Region_8u32f_C1R(a.src, a.step, a.roi, a.lines, a.part, a.most, a.count, a.delta, a.threshold,
                                          a.buffer);
  };
  checks.insert(checks.begin(), {"part", orvStatusNullPtr, [](Arguments& a) { a.part = nullptr; }});
  walkChecks<Arguments>(valid, checks, region, untouched);
  for (const int which : {0, 1}) {
    Arguments a = valid;
    a.part = inverted, count = -7;
    if (which) inverted[1] = {-1, 2};
    CHECK(region(a) == orvStatusRange && count == 0);
  }
  alignas(8) uint8_t state[512];
  CHECK(orviHoughProbLineInit_8u32f_C1R({8, 8}, {1, .1f}, 0, (OrvHoughProbState*)state) == orvStatusOk);
  int32_t segment[16] = {-7};
  struct Segments {
    const void *src, *lines, *buffer, *state;
    OrvSize roi;
    int32_t threshold, length, gap;
  };
  count = -7;
  walkChecks<Segments>(
      {src.data(), segment, buffer.data(), state, {8, 8}, 3, 2, 1},
      {{"src", orvStatusNullPtr, [](Segments& a) { a.src = nullptr; }},
       {"lines", orvStatusNullPtr, [](Segments& a) { a.lines = nullptr; }},
       {"buffer", orvStatusNullPtr, [](Segments& a) { a.buffer = nullptr; }},
       {"state", orvStatusNullPtr, [](Segments& a) { a.state = nullptr; }},
       {"width", orvStatusSize, [](Segments& a) { a.roi.width = 0; }},
       {"height", orvStatusSize, [](Segments& a) { a.roi.height = 0; }},
       {"threshold", orvStatusBadArg, [](Segments& a) { a.threshold = 0; }},
       {"length", orvStatusBadArg, [](Segments& a) { a.length = -1; }},
       {"gap", orvStatusBadArg, [](Segments& a) { a.gap = -1; }}},
      [&](Segments& a) {
        return orviHoughProbLine_8u32f_C1R((const uint8_t*)a.src, 8, a.roi, a.threshold, a.length, a.gap,
                                           (int32_t*)a.lines, 4, &count, (uint8_t*)a.buffer,
                                           (const OrvHoughProbState*)a.state);
      },
      [&] { return count == -7 && segment[0] == -7; });
}

// A perfect line of 20 votes: above a threshold it must be in one detector, at it in the other.
TEST(thresholds) {
  const OrvPointPolar delta = {1, 1.5707f};
  const OrvSize roi = {20, 9};
  uint8_t image[180] = {};
  for (int x = 0; x < 20; ++x) image[5 * 20 + x] = 1;
  std::vector<uint8_t> buffer(1 << 16), memory(64);
  auto* const state = (OrvHoughProbState*)(void*)memory.data();
  OrvPointPolar line[4];
  int32_t count, segment[16];
  orviHoughProbLineInit_8u32f_C1R(roi, delta, 0, state);
  for (const int32_t threshold : {19, 20, 21}) {
    orviHoughLine_8u32f_C1R(image, 20, roi, delta, threshold, line, 4, &count, buffer.data());
    CHECK(count == (threshold < 20) && (count == 0 || (line[0].rho == 5 && line[0].theta == 1.5707f)));
    orviHoughProbLine_8u32f_C1R(image, 20, roi, threshold, 5, 0, segment, 4, &count, buffer.data(), state);
    CHECK(count == (threshold <= 20), "threshold %d: %d segments", threshold, count);
    if (count == 1) CHECK(segment[1] == 5 && segment[3] == 5 && abs(segment[0] - segment[2]) == 19);
  }
}
