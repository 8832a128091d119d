// FastN against the plain walk along the ring: all rings and arcs, modes, clipped regions; lists, sizes, statuses.
#include "framework/sweep.h"
#include "reference/fastn.h"

using namespace test;
using reference::FastNSetup;

namespace {

constexpr int radii[] = {1, 2, 3, 5, 7, 9}, points[] = {8, 12, 16, 28, 40, 52};
constexpr int modes[] = {4, 5, 36, 37, 38, 39};

bool addsInOrder() { return orvcvGetLibVersion()->cpuTag[0] == 'n'; }

// Flat rectangles and dots, with a little noise: arcs of every length.
void draw(Random& r, Image<uint8_t>& image, OrvSize size) {
  const int base = r.in(0, 255), noise = r.one(2) ? 0 : r.in(1, 12);
  for (int i = 0; i < size.width * size.height; ++i) image.set(i % size.width, i / size.width, (uint8_t)base);
  for (int shape = size.width * size.height / 40 + 2; shape > 0; --shape) {
    const int left = r.in(-5, size.width - 1), top = r.in(-5, size.height - 1), value = r.in(0, 255);
    const int width = r.one(2) ? 1 : r.in(1, 12), height = r.one(2) ? width : r.in(1, 12);
    for (int y = std::max(top, 0); y < std::min(top + height, size.height); ++y)
      for (int x = std::max(left, 0); x < std::min(left + width, size.width); ++x)
        image.set(x, y, (uint8_t)std::min(255, value + r.in(0, noise)));
  }
  image.keep();
}

// A state of exactly the reported size, at any address.
struct State {
  Guarded memory;
  State(Random& r, const FastNSetup& s, float threshold) : memory(bytes(s), !r.one(3), (size_t)r.in(0, 9)) {
    CHECK(orviFastNInit(s.image, s.radius, s.arc, s.bins, threshold, s.mode, orvData8u, 1, memory.data()) == 0);
    CHECK(memory.intact(), "written outside the state");
  }
  static size_t bytes(const FastNSetup& s) {
    int32_t size = 0;
    CHECK(orviFastNGetSize(s.image, s.radius, s.arc, s.bins, s.mode, orvData8u, 1, &size) == orvStatusOk);
    CHECK(size == 8 * (int)reference::fastNRing(s.radius).size() + 68);
    return (size_t)size;
  }
};

// One region, which may stick out of the image, at all widths. Returns the number of corners.
int check(Random& r, const FastNSetup& setup, OrvPoint offset, OrvSize roi) {
  const OrvSize size = setup.image;
  char text[160];
  snprintf(text, sizeof text, "image %dx%d, region %dx%d at %d %d, radius %d, N %d, mode %d, threshold %d", size.width,
           size.height, roi.width, roi.height, offset.x, offset.y, setup.radius, setup.arc, setup.mode,
           setup.threshold);
  const Context context(text);
  Image<uint8_t> src(r, size.width, size.height, 1);
  draw(r, src, size);
  const State state(r, setup, (float)setup.threshold + 0.9f);
  Image<uint8_t> corner(r, roi.width, roi.height, 1), score(r, roi.width, roi.height, 1);
  const uint8_t before = 77;
  for (Image<uint8_t>* image : {&corner, &score}) {
    for (int i = 0; i < roi.width * roi.height; ++i) image->set(i % roi.width, i / roi.width, before);
    image->keep();
  }
  const int left = std::max(offset.x, 0), top = std::max(offset.y, 0);
  const OrvRect region = {left, top, std::min(offset.x + roi.width, size.width) - left,
                          std::min(offset.y + roi.height, size.height) - top};
  const bool nothing = region.width < 1 || region.height < 1;
  const bool whole = left == offset.x && top == offset.y && region.width == roi.width && region.height == roi.height;
  std::vector<uint8_t> corners, scores;
  const auto at = [&](int x, int y) { return (int)src.at(x, y); };
  const int want = nothing ? -77 : reference::fastN(at, setup, region, addsInOrder(), corners, scores);
  forEachSetting(false, [&] {
    int32_t bytes = 0, count = -77;
    CHECK(orviFastNGetBufferSize(state.memory.data(), roi, &bytes) == 0 && bytes == 6 * (roi.width + 2) + 624);
    const Guarded buffer((size_t)bytes, r.one(2), (size_t)r.in(0, 9));
    corner.restore(), score.restore();
    const OrvStatus status = orviFastN_8u_C1R(src.data(), src.step(), corner.data(), corner.step(), score.data(),
                                              score.step(), &count, offset, roi, state.memory.data(), buffer.data());
    CHECK(status == (whole ? orvStatusOk : orvStatusRoiClippedWarn), "status %d", (int)status);
    CHECK(count == want, "%d corners, not %d", (int)count, want);
    CHECK(buffer.intact() && src.unchanged(), "written outside");
    CHECK(!(nothing || !(setup.mode & orvFastNScore)) || score.unchanged(), "scores written");
    // The results, then what was there before: nothing else may have changed.
    for (int i = 0; !nothing && i < region.width * region.height; ++i) {
      const int x = i % region.width, y = i / region.width;
      if (corner.at(x, y) != corners[(size_t)i])
        return fail("corner %d at %d %d, not %d", corner.at(x, y), x, y, corners[(size_t)i]);
      if (setup.mode & orvFastNScore && score.at(x, y) != scores[(size_t)i])
        return fail("score %d at %d %d, not %d", score.at(x, y), x, y, scores[(size_t)i]);
      corner.set(x, y, before), score.set(x, y, before);
    }
    CHECK(corner.unchanged() && (score.unchanged() || !(setup.mode & orvFastNScore)), "written outside the region");
  });
  return want;
}

FastNSetup some(Random& r, int ring, OrvSize image) {
  const int n = points[ring];
  return {image,       radii[ring],       r.one(2) ? n / 2 + 1 : r.in(n / 2 + 1, n - 1),
          r.in(1, 64), modes[r.in(0, 5)], r.one(4) ? r.in(0, 254) : r.in(0, 30)};
}

}  // namespace

TEST(wholeImages) {
  Random r(seed());
  int found = 0;
  for (int ring = 0; ring < 6; ++ring) {
    const int edge = 2 * radii[ring];
    for (int width = 1; width <= 19; width += quick() ? 3 : 1)
      check(r, some(r, ring, {edge - 1 + width, edge - 1 + r.in(0, 9)}), {0, 0}, {edge - 1 + width, edge + 9});
    for (const int width : {31, 33, 63, 64, 65, 131}) {
      const OrvSize size = {edge + width, edge + 6};
      const int n = check(r, some(r, ring, size), {0, 0}, size);
      found += n;
    }
    for (int arc = points[ring] / 2 + 1; arc < points[ring]; ++arc) {
      const OrvSize size = {edge + 17, edge + 5};
      found += check(r, {size, radii[ring], arc, 8, 36, 3}, {0, 0}, size);
    }
  }
  CHECK(found > 300, "%d corners are too few for a test", found);
}

// Regions inside the image, with corners around them, and regions that stick out on every side.
TEST(regions) {
  Random r(seed());
  for (int i = 0; i < (quick() ? 60 : 300); ++i) {
    const OrvSize size = {r.in(1, 40), r.in(1, 30)};
    FastNSetup setup = some(r, r.in(0, 3), size);
    if (i % 2) setup.mode = 38;
    check(r, setup, {r.in(-6, size.width + 1), r.in(-6, size.height + 1)}, {r.in(1, 30), r.in(1, 20)});
  }
}

// Dark dots, one pixel or two, on a bright field: every ring is brighter all round; equal neighbours stay both.
TEST(knownImages) {
  Random r(seed());
  const FastNSetup setup = {{40, 30}, 3, 9, 64, 38, 10};
  const State state(r, setup, 10.9f);
  std::vector<uint8_t> image(40 * 30, 100), corner(40 * 30), score(40 * 30), buffer(6 * 42 + 624);
  const auto run = [&] {
    int32_t count = -1;
    CHECK(orviFastN_8u_C1R(image.data(), 40, corner.data(), 40, score.data(), 40, &count, {0, 0}, setup.image,
                           state.memory.data(), buffer.data()) == orvStatusOk);
    return count;
  };
  CHECK(run() == 0, "a flat image");
  image[15 * 40 + 10] = 90;
  CHECK(run() == 0, "a difference of the threshold itself is neutral");
  image[15 * 40 + 10] = image[15 * 40 + 11] = 40;
  CHECK(run() == 2 && corner[15 * 40 + 10] == 64 && score[15 * 40 + 11] == 60, "equal neighbours");
  image[15 * 40 + 11] = 39;
  CHECK(run() == 1 && corner[15 * 40 + 11] == 64 && score[15 * 40 + 10] == 0, "the stronger one");
  image[15 * 40 + 11] = 100, image[15 * 40 + 10] = 255;
  CHECK(run() == 1 && corner[15 * 40 + 10] == 128 && score[15 * 40 + 10] == 155);
  const State blind(r, setup, 3e9f);
  int32_t count = -1;
  CHECK(orviFastN_8u_C1R(image.data(), 40, corner.data(), 40, score.data(), 40, &count, {0, 0}, setup.image,
                         blind.memory.data(), buffer.data()) == 0 &&
        count == 0 && corner[15 * 40 + 10] == 0);
}

TEST(lists) {
  Random r(seed());
  for (int i = 0; i < 200; ++i) {
    const FastNSetup setup = {{9, 9}, 1, 5, i % 3 ? r.in(1, 64) : 40, modes[r.in(0, 5)], 1};
    const OrvSize size = {r.in(1, 20), r.in(1, 6)};
    const State state(r, setup, 1);
    Image<uint8_t> corner(r, size.width, size.height, 1), score(r, size.width, size.height, 1);
    for (int k = 0; k < size.width * size.height; ++k)
      corner.set(k % size.width, k / size.width, (uint8_t)(r.one(i % 5 + 1) ? r.in(64, 255) : 0));
    const int most = r.one(4) ? 0 : r.in(0, 12);
    std::vector<OrvCornerFastN> want;
    int number = 0, column = 0;
    for (int y = 0; y < size.height; ++y) {
      const int from = column;
      const bool storing = (int)want.size() < most;
      column = 0;
      for (int x = from; x < size.width; ++x) {
        const int byte = corner.at(x, y);
        if (byte == 0) continue;
        ++number;
        if (!storing) continue;
        const bool oriented = setup.mode & 1, scored = setup.mode & 32;
        want.push_back({x, y, byte / 128, oriented ? byte % 64 : -1,
                        oriented ? (float)(byte % 64) * (360.0f / (float)setup.bins) : -1,
                        scored ? (float)score.at(x, y) : -1});
        if ((int)want.size() < most) continue;
        column = x + 1;
        break;
      }
    }
    const Guarded list(sizeof(OrvCornerFastN) * want.size() + 1, true, 0);  // no byte more than the corners need
    int32_t count = -1;
    CHECK(orviFastN2DToVec_8u(corner.data(), corner.step(), score.data(), score.step(),
                              (OrvCornerFastN*)(void*)list.data(), size, most, &count, state.memory.data()) == 0);
    CHECK(count == number && memcmp(list.data(), want.data(), sizeof(OrvCornerFastN) * want.size()) == 0,
          "%d by %d, %d corners, not %d", size.width, size.height, (int)count, number);
  }
}

namespace {

// The arguments of all functions in one record.
struct Call {
  OrvSize roi = {9, 9};
  int radius = 3, arc = 9, bins = 8, mode = 39, type = orvData8u, channels = 1, most = 5;
  float threshold = 5;
  const uint8_t *src, *score;
  uint8_t *corner, *state, *buffer;
  int32_t* result;
  OrvCornerFastN* list;
};
using Faults = std::vector<Check<Call>>;

// A change of a state's field, by its place in the record.
void spoilState(Call& call, int field, int32_t value) { memcpy(call.state + call.state[0] + 4 * field, &value, 4); }

Faults operator+(Faults a, const Faults& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

}  // namespace

TEST(statuses) {
  const FastNSetup setup = {{20, 20}, 3, 9, 8, 39, 5};
  Random r(seed());
  State state(r, setup, 5);
  std::vector<uint8_t> good(state.memory.data(), state.memory.data() + state.memory.bytes()), fresh(good.size() + 8);
  std::vector<uint8_t> image(400, 9), corner(400, 3), buffer(2000);
  OrvCornerFastN list[8];
  int32_t result = -5;
  Call valid;
  valid.src = image.data(), valid.score = image.data(), valid.corner = corner.data(), valid.buffer = buffer.data();
  valid.state = state.memory.data(), valid.result = &result, valid.list = list;
  const auto untouched = [&] { return result == -5 && corner == std::vector<uint8_t>(400, 3); };
  const auto restored = [&](OrvStatus status) {
    memcpy(state.memory.data(), good.data(), good.size());
    return status;
  };
  const Faults size = {{"width", orvStatusSize, [](Call& c) { c.roi.width = 0; }},
                       {"height", orvStatusSize, [](Call& c) { c.roi.height = -1; }}};
  const Faults setups = {{"type", orvStatusDataType, [](Call& c) { c.type = orvData16u; }},
                         {"channels", orvStatusChannels, [](Call& c) { c.channels = 3; }},
                         {"mode", orvStatusBadArg, [](Call& c) { c.mode = 7; }},
                         {"bins", orvStatusOutOfRange, [](Call& c) { c.bins = 65; }},
                         {"radius", orvStatusBadArg, [](Call& c) { c.radius = 4; }},
                         {"arc", orvStatusOutOfRange, [](Call& c) { c.arc = 16; }}};
  const Check<Call> noResult = {"result", orvStatusNullPtr, [](Call&c) { c.result = nullptr; }},
                    noState = {"state", orvStatusNullPtr, [](Call&c) { c.state = nullptr; }};
  walkChecks<Call>(
      valid, Faults{noResult} + size + setups,
      [](Call& c) { return orviFastNGetSize(c.roi, c.radius, c.arc, c.bins, c.mode, c.type, c.channels, c.result); },
      untouched);
  Call init = valid;
  init.state = fresh.data();
  walkChecks<Call>(
      init,
      Faults{noState} + size + Faults{{"threshold", orvStatusThreshold, [](Call& c) { c.threshold = -0.5f; }}} + setups,
      [](Call& c) {
        return orviFastNInit(c.roi, c.radius, c.arc, c.bins, c.threshold, c.mode, c.type, c.channels, c.state);
      },
      [&] { return fresh == std::vector<uint8_t>(good.size() + 8); });
  walkChecks<Call>(
      valid, Faults{noState, noResult} + size, [](Call& c) { return orviFastNGetBufferSize(c.state, c.roi, c.result); },
      untouched);

  // Spoiled states; a null state would hide what the others spoil, so it is tried alone.
  const auto inState = [](const char* name, OrvStatus status, int field, int32_t value) {
    return Check<Call>{name, status, [=](Call& c) { spoilState(c, field, value); }};
  };
  const Faults stateHead = {inState("id", orvStatusContext, 0, 5), inState("type", orvStatusDataType, 1, 5),
                            inState("channels", orvStatusChannels, 2, 3)};
  const Faults stateMode = {inState("mode", orvStatusBadArg, 8, 7), inState("bins", orvStatusOutOfRange, 7, 0)};
  const auto find = [&](Call& c) {
    return restored(orviFastN_8u_C1R(c.src, 20, c.corner, 20, (uint8_t*)(uintptr_t)c.score, 20, c.result, {0, 0}, c.roi,
                                     c.state, c.buffer));
  };
  const Check<Call> noCorner = {"corner", orvStatusNullPtr, [](Call&c) { c.corner = nullptr; }},
                    noScore = {"score", orvStatusNullPtr, [](Call&c) { c.score = nullptr; }};
  walkChecks<Call>(valid,
                   Faults{{"src", orvStatusNullPtr, [](Call& c) { c.src = nullptr; }},
                          noCorner,
                          {"buffer", orvStatusNullPtr, [](Call& c) { c.buffer = nullptr; }},
                          noResult} +
                       size + stateHead + Faults{inState("image", orvStatusSize, 4, 0)} + stateMode + Faults{noScore} +
                       Faults{inState("radius", orvStatusBadArg, 5, 6), inState("arc", orvStatusOutOfRange, 6, 8)},
                   find, untouched);
  const auto toList = [&](Call& c) {
    return restored(orviFastN2DToVec_8u(c.corner, 20, c.score, 20, c.list, c.roi, c.most, c.result, c.state));
  };
  walkChecks<Call>(valid,
                   Faults{noCorner, {"list", orvStatusNullPtr, [](Call& c) { c.list = nullptr; }}, noResult} + size +
                       Faults{{"length", orvStatusSize, [](Call& c) { c.most = -1; }}} + stateHead + stateMode +
                       Faults{noScore},
                   toList, untouched);
  Call stateless = valid;
  stateless.state = nullptr;
  CHECK(find(stateless) == orvStatusNullPtr && toList(stateless) == orvStatusNullPtr);
  for (const int mode : {0, 1, 2, 6, 32, 35, 4 | 8, 4 | 64, -1}) {
    Call bad = valid;
    CHECK(orviFastNGetSize(bad.roi, 3, 9, 8, mode, 1, 1, bad.result) == orvStatusBadArg, "mode %d", mode);
  }
}
