// FastN against the plain walk along the ring: all rings and arcs, modes, clipped regions; lists, sizes, statuses.
#include "features/roles.h"
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

// A drawn image of a size of its own.
struct Scene : ImageRole<uint8_t> {
  OrvSize size;
  explicit Scene(OrvSize told) : ImageRole<uint8_t>(In<uint8_t>()), size(told) {}
  void prepare(Random& r, const Shape&) {
    candidate.emplace(r, size.width, size.height, 1);
    draw(r, *candidate, size);
  }
};

// One region, which may stick out of the image. Returns the number of corners.
int check(Random& r, const FastNSetup& setup, OrvPoint offset, OrvSize roi) {
  const OrvSize size = setup.image;
  char text[160];
  snprintf(text, sizeof text, "image %dx%d, radius %d, N %d, mode %d, threshold %d, at %d %d", size.width, size.height,
           setup.radius, setup.arc, setup.mode, setup.threshold, offset.x, offset.y);
  const State state(r, setup, (float)setup.threshold + 0.9f);
  const int left = std::max(offset.x, 0), top = std::max(offset.y, 0);
  const OrvRect region = {left, top, std::min(offset.x + roi.width, size.width) - left,
                          std::min(offset.y + roi.height, size.height) - top};
  const bool nothing = region.width < 1 || region.height < 1;
  const bool whole = left == offset.x && top == offset.y && region.width == roi.width && region.height == roi.height;
  int want = -77;  // not written if there is nothing to look at
  const auto called = [&](const uint8_t* src, int32_t srcStep, uint8_t* corner, int32_t cornerStep, uint8_t* score,
                          int32_t scoreStep, int32_t* count, OrvSize, uint8_t* buffer) {
    *count = -77;
    const OrvStatus status = orviFastN_8u_C1R(src, srcStep, corner, cornerStep, score, scoreStep, count, offset, roi,
                                              state.memory.data(), buffer);
    CHECK(status == (whole ? orvStatusOk : orvStatusRoiClippedWarn), "status %d", (int)status);
    return orvStatusOk;
  };
  const auto plain = [&](const uint8_t* src, int32_t srcStep, uint8_t* corner, int32_t cornerStep, uint8_t* score,
                         int32_t scoreStep, int32_t* count, OrvSize, uint8_t*) {
    const auto at = [&](int x, int y) { return (int)reference::load(src, srcStep, y, x); };
    if (!nothing) want = reference::fastN(at, setup, region, addsInOrder(), corner, cornerStep, score, scoreStep);
    *count = want;
  };
  const Scratch buffer([&](OrvSize s, int32_t* bytes) {
    const OrvStatus status = orviFastNGetBufferSize(state.memory.data(), s, bytes);
    CHECK(*bytes == 6 * (s.width + 2) + 624);
    return status;
  });
  sweepShapes(text, called, plain, {{roi.width, roi.height}}, r, Scene(size), InOut<uint8_t>(), InOut<uint8_t>(),
              Result<int32_t>(), Roi(), buffer);
  return want;
}

FastNSetup some(Random& r, int ring, OrvSize image) {
  const int n = points[ring];
  return {image,       radii[ring],       r.one(2) ? n / 2 + 1 : r.in(n / 2 + 1, n - 1),
          r.in(1, 64), modes[r.in(0, 5)], r.one(4) ? r.in(0, 260) : r.one(30) ? INT32_MAX : r.in(0, 30)};
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
      const OrvSize whole = {edge + width, edge + 6};
      found += check(r, some(r, ring, whole), {0, 0}, whole);
    }
    const OrvSize size = {edge + 17, edge + 5};
    for (int arc = points[ring] / 2 + 1; arc < points[ring]; ++arc)
      found += check(r, {size, radii[ring], arc, 8, 36, 3}, {0, 0}, size);
  }
  CHECK(found > 300, "%d corners are too few for a test", found);
}

// Regions inside the image, with corners around them, and regions that stick out on every side.
TEST(regions) {
  Random r(seed());
  for (int i = 0; i < (quick() ? 60 : 300); ++i) {
    const OrvSize size = {r.in(1, 40), r.in(1, 30)};
    FastNSetup setup = some(r, r.in(0, 3), size);
    if (i % 2) setup.mode = 38, setup.threshold = r.in(0, 12);
    check(r, setup, {r.in(-6, size.width + 1), r.in(-6, size.height + 1)}, {r.in(1, 30), r.in(1, 20)});
  }
}

// All corners in the order of scanning, as far as the list reaches. A full list ends its row, and in the next row
// counting begins behind the column of the last one listed.
TEST(lists) {
  Random r(seed());
  for (int i = 0; i < 200; ++i) {
    const FastNSetup setup = {{9, 9}, 1, 5, i % 3 ? r.in(1, 64) : 40, modes[r.in(0, 5)], 1};
    const bool oriented = setup.mode & orvFastNOrientation, scored = setup.mode & orvFastNScore;
    const OrvSize size = {r.in(1, 20), r.in(1, 6)};
    const State state(r, setup, 1);
    Image<uint8_t> corner(r, size.width, size.height, 1), score(r, size.width, size.height, 1);
    std::vector<OrvCornerFastN> all;
    for (int k = 0; k < size.width * size.height; ++k) {
      const int x = k % size.width, y = k / size.width, byte = r.one(i % 5 + 1) ? r.in(64, 255) : 0, bin = byte % 64;
      corner.set(x, y, (uint8_t)byte);
      if (byte)
        all.push_back({x, y, byte / 128, oriented ? bin : -1, oriented ? (float)bin * (360.0f / (float)setup.bins) : -1,
                       scored ? (float)score.at(x, y) : -1});
    }
    const size_t most = r.one(4) ? 0 : (size_t)r.in(0, 12), listed = std::min(most, all.size());
    int number = (int)listed;
    for (size_t k = listed; k < all.size(); ++k) {
      const OrvCornerFastN &c = all[k], &last = all[listed > 0 ? listed - 1 : 0];
      number += listed == 0 || c.y > last.y + 1 || (c.y == last.y + 1 && c.x > last.x);
    }
    const Guarded list(sizeof(OrvCornerFastN) * listed + 1, true, 0);  // no byte more than the corners need
    int32_t count = -1;
    CHECK(orviFastN2DToVec_8u(corner.data(), corner.step(), score.data(), score.step(),
                              (OrvCornerFastN*)(void*)list.data(), size, (int)most, &count, state.memory.data()) == 0);
    all.push_back({});  // so that there is a place to compare
    CHECK(count == number && memcmp(list.data(), all.data(), sizeof(OrvCornerFastN) * listed) == 0,
          "%d by %d, %d corners, not %d", size.width, size.height, (int)count, number);
  }
}

namespace {

// The arguments of all functions in one record; `id` to `mode` are as in a state.
struct Call {
  const uint8_t *src, *score;
  uint8_t *corner, *state, *buffer;
  OrvCornerFastN* list;
  int32_t *result, id;
  OrvSize roi = {9, 9};
  int32_t type = orvData8u, channels = 1;
  OrvSize image = {20, 20};
  int32_t radius = 3, arc = 9, bins = 8, mode = 39, most = 5;
  float threshold = 5;
};
enum { sizing = 1, making = 2, finding = 4, listing = 8, all = 15 };

OrvStatus run(int function, const Call& c) {
  if (function == sizing) return orviFastNGetSize(c.roi, c.radius, c.arc, c.bins, c.mode, c.type, c.channels, c.result);
  if (function == making)
    return orviFastNInit(c.roi, c.radius, c.arc, c.bins, c.threshold, c.mode, c.type, c.channels, c.state);
  const int32_t fields[] = {c.id, c.type, c.channels, c.image.width, c.image.height, c.radius, c.arc, c.bins, c.mode};
  if (c.state) memcpy(c.state + c.state[0], fields, sizeof fields);
  if (function == listing)
    return orviFastN2DToVec_8u(c.corner, 20, c.score, 20, c.list, c.roi, c.most, c.result, c.state);
  return orviFastN_8u_C1R(c.src, 20, c.corner, 20, (uint8_t*)(uintptr_t)c.score, 20, c.result, {0, 0}, c.roi, c.state,
                          c.buffer);
}

}  // namespace

TEST(statuses) {
  // The checks in their order, and the functions that make them.
  const std::vector<SharedCheck<Call>> checks = {
      {finding, {"src", orvStatusNullPtr, [](Call& c) { c.src = nullptr; }}},
      {finding | listing, {"corner", orvStatusNullPtr, [](Call& c) { c.corner = nullptr; }}},
      {listing, {"list", orvStatusNullPtr, [](Call& c) { c.list = nullptr; }}},
      {all - sizing, {"state", orvStatusNullPtr, [](Call& c) { c.state = nullptr; }}},
      {finding, {"buffer", orvStatusNullPtr, [](Call& c) { c.buffer = nullptr; }}},
      {all - making, {"result", orvStatusNullPtr, [](Call& c) { c.result = nullptr; }}},
      {all, {"width", orvStatusSize, [](Call& c) { c.roi.width = 0; }}},
      {all, {"height", orvStatusSize, [](Call& c) { c.roi.height = -1; }}},
      {listing, {"length", orvStatusSize, [](Call& c) { c.most = -1; }}},
      {making, {"threshold", orvStatusThreshold, [](Call& c) { c.threshold = -0.5f; }}},
      {finding | listing, {"id", orvStatusContext, [](Call& c) { c.id = 5; }}},
      {all, {"type", orvStatusDataType, [](Call& c) { c.type = orvData16u; }}},
      {all, {"channels", orvStatusChannels, [](Call& c) { c.channels = 3; }}},
      {finding, {"image", orvStatusSize, [](Call& c) { c.image.height = 0; }}},
      {all, {"mode", orvStatusBadArg, [](Call& c) { c.mode = 7; }}},
      {all, {"bins", orvStatusOutOfRange, [](Call& c) { c.bins = 65; }}},
      {finding | listing, {"score", orvStatusNullPtr, [](Call& c) { c.score = nullptr; }}},
      {all - listing, {"radius", orvStatusBadArg, [](Call& c) { c.radius = 4; }}},
      {all - listing, {"arc", orvStatusOutOfRange, [](Call& c) { c.arc = 16; }}}};
  Random r(seed());
  const FastNSetup setup = {{20, 20}, 3, 9, 8, 39, 5};
  const State state(r, setup, 5);
  std::vector<uint8_t> image(400, 9), corner(400, 3), buffer(2000), fresh(state.memory.bytes() + 8);
  OrvCornerFastN list[8];
  int32_t result = -5, id;
  memcpy(&id, state.memory.data() + state.memory.data()[0], 4);
  Call valid = {image.data(), image.data(), corner.data(), nullptr, buffer.data(), list, &result, id};
  for (const int function : {sizing, making, finding, listing}) {
    valid.state = function == making ? fresh.data() : state.memory.data();
    walkShared(function, valid, checks, run, [&] {
      return result == -5 && corner == std::vector<uint8_t>(400, 3) && fresh == std::vector<uint8_t>(fresh.size());
    });
  }
  for (const OrvSize bad : {OrvSize{0, 5}, OrvSize{5, 0}})
    CHECK(orviFastNGetBufferSize(valid.state, bad, &result) == orvStatusSize);
  CHECK(orviFastNGetBufferSize(nullptr, {0, 5}, &result) == orvStatusNullPtr && result == -5);
  for (const int mode : {0, 1, 2, 6, 32, 35, 4 | 8, 4 | 64, -1})
    CHECK(orviFastNGetSize({9, 9}, 3, 9, 8, mode, 1, 1, &result) == orvStatusBadArg, "mode %d", mode);
}
