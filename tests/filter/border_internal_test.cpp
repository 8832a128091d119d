// The border rule, the row strips and the copies with borders, against the walked rule. Sources have readable pixels
// only where a side is in memory, and often end at a protected page.
#include "filter/border_copy.h"
#include "filter/row_border.h"
#include "core/primitives.h"
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/walker.h"
#include "reference/border.h"

using namespace test;

namespace {

constexpr int allSides = 240;
constexpr int kinds[] = {orvBorderConst, orvBorderRepl, orvBorderWrap, orvBorderMirr, orvBorderMirrR};

int rounds(int count) { return quick() ? count / 8 : count; }

// A side's length: mostly short, at times around the vector widths or longer.
int randomLength(Random& r) { return r.one(6) ? r.in(28, 70) : r.one(12) ? r.in(250, 300) : r.in(1, 18); }

// Memory around an image on the given sides only.
Margin marginOf(int sides, int left, int top, int right, int bottom) {
  return {sides & orvBorderInMemLeft ? left : 0, sides & orvBorderInMemTop ? top : 0,
          sides & orvBorderInMemRight ? right : 0, sides & orvBorderInMemBottom ? bottom : 0};
}

// One copy: an image of `channels` with memory on `sides`, and what is to be written around it.
template <class T>
struct Scene {
  int channels, kind, sides;
  OrvSize size;
  int left, top, right, bottom;  // negative: the window begins or ends inside the image
  std::vector<T> value;
  Image<T> src;

  Scene(Random& r, int c, int kindOfBorder, int memory, OrvSize of, int l, int t, int rt, int b)
      : channels(c),
        kind(kindOfBorder),
        sides(memory),
        size(of),
        left(l),
        top(t),
        right(rt),
        bottom(b),
        value((size_t)c),
        src(r, of.width, of.height, c, marginOf(memory, positive(l), positive(t), positive(rt), positive(b))) {
    src.fill(r, true);
    for (T& v : value) v = randomElement<T>(r, true);
  }
  static int positive(int n) { return n > 0 ? n : 0; }
  OrvSize whole() const { return {size.width + left + right, size.height + top + bottom}; }

  T expected(int x, int y, int channel) const {
    const std::function<T(int, int)> pixel = [&](int column, int row) {
      return src.at(column * channels + channel, row);
    };
    return reference::borderedPixel<T>(pixel, size, x - left, y - top, kind, sides, value[(size_t)channel]);
  }

  // Whether `pixel(x, y)`, x in elements, is the expected picture; sNaNs and signs of zero count.
  template <class Pixel>
  void compare(const char* name, const Pixel& pixel) const {
    for (int y = 0; y < whole().height; ++y)
      for (int x = 0; x < whole().width * channels; ++x) {
        const T want = expected(x / channels, y, x % channels), got = pixel(x, y);
        if (memcmp(&want, &got, sizeof(T)) == 0) continue;
        return fail("%s: %dx%d, border %d %d %d %d, kind %d, sides %d: element (%d, %d) is %g, not %g", name,
                    size.width, size.height, left, top, right, bottom, kind, sides, x, y, (double)got, (double)want);
      }
  }
};

template <class T>
Scene<T> randomScene(Random& r, int channels, int kind, int sides) {
  const auto border = [&] { return r.one(4) ? 0 : r.one(5) ? r.in(5, 40) : r.in(1, 4); };
  const OrvSize size = {randomLength(r), r.in(1, 9)};
  return Scene<T>(r, channels, kind, sides, size, border(), border(), border(), border());
}

// copy(scene, dst) must write the expected picture to dst, and nothing else.
template <class T, class Copy>
void checkCopy(Random& r, const char* name, const Scene<T>& scene, const Copy& copy) {
  Image<T> dst(r, scene.whole().width, scene.whole().height, scene.channels);
  const OrvStatus status = copy(scene, dst);
  CHECK(status == orvStatusOk, "%s", name);
  scene.compare(name, [&](int x, int y) { return dst.at(x, y); });
  CHECK(dst.onlyRegionChanged() && scene.src.unchanged(), "%s", name);
}

template <class T>
void checkConst(const char* name,
                OrvStatus (*f)(const T*, int32_t, OrvSize, T*, int32_t, OrvSize, int32_t, int32_t, T)) {
  Random r(seed());
  for (int i = 0; i < rounds(300); ++i)
    checkCopy(r, name, randomScene<T>(r, 1, orvBorderConst, 0), [&](const Scene<T>& s, Image<T>& dst) {
      return f(s.src.data(), s.src.step(), s.size, dst.data(), dst.step(), s.whole(), s.top, s.left, s.value[0]);
    });
}

template <class T>
using Replicate = OrvStatus (*)(const T*, int32_t, OrvSize, T*, int32_t, OrvSize, int32_t, int32_t);
template <class T>
using ReplicateInPlace = OrvStatus (*)(T*, int32_t, OrvSize, OrvSize, int32_t, int32_t);

// The image stands in the destination already, at the offset of its border.
template <class T>
void place(const Scene<T>& s, Image<T>& dst) {
  for (int y = 0; y < s.size.height; ++y)
    for (int x = 0; x < s.size.width * s.channels; ++x) dst.set(x + s.left * s.channels, y + s.top, s.src.at(x, y));
}

template <class T>
void checkReplicate(const char* name, int channels, Replicate<T> f, ReplicateInPlace<T> g = nullptr) {
  Random r(seed());
  for (int i = 0; i < rounds(300); ++i) {
    const auto scene = randomScene<T>(r, channels, orvBorderRepl, 0);
    checkCopy(r, name, scene, [&](const Scene<T>& s, Image<T>& dst) {
      return f(s.src.data(), s.src.step(), s.size, dst.data(), dst.step(), s.whole(), s.top, s.left);
    });
    checkCopy(r, name, scene, [&](const Scene<T>& s, Image<T>& dst) {
      place(s, dst);
      return f(dst.data(), 1, s.size, dst.data(), dst.step(), s.whole(), s.top, s.left);
    });
    if (g)
      checkCopy(r, name, scene, [&](const Scene<T>& s, Image<T>& dst) {
        place(s, dst);
        return g(dst.data(), dst.step(), s.size, s.whole(), s.top, s.left);
      });
  }
}

// All flags, with any kind beside them: only the value 6 as a whole stands for four sides.
template <class T>
void checkInMem(const char* name, int channels,
                OrvStatus (*f)(const T*, int32_t, OrvSize, T*, int32_t, OrvSize, int32_t, int32_t, int32_t)) {
  Random r(seed());
  for (int i = 0; i < rounds(400); ++i) {
    const int type = r.in(0, 15) * 16 + (r.one(2) ? orvBorderInMem : orvBorderRepl);
    const int sides = type == orvBorderInMem ? allSides : type & allSides;
    checkCopy(r, name, randomScene<T>(r, channels, orvBorderRepl, sides), [&](const Scene<T>& s, Image<T>& dst) {
      return f(s.src.data(), s.src.step(), s.size, dst.data(), dst.step(), s.whole(), type, s.top, s.left);
    });
  }
}

template <class T>
void checkWindow(const char* name,
                 OrvStatus (*f)(const T*, int32_t, OrvSize, T*, int32_t, int32_t, OrvPoint, OrvSize, T)) {
  Random r(seed());
  for (int i = 0; i < rounds(800); ++i) {
    const bool memoryByKind = r.one(8);
    const int flags = r.one(3) ? 0 : r.in(0, 15) * 16;
    const int kind = memoryByKind ? (int)orvBorderInMem : kinds[r.in(0, 4)];
    const OrvSize size = {randomLength(r), r.in(1, 9)};
    const OrvSize window = {randomLength(r), r.in(1, 9)};
    const OrvPoint offset = {r.in(-window.width - 3, size.width + 3), r.in(-window.height - 3, size.height + 3)};
    const Scene<T> scene(r, 1, kind, memoryByKind ? allSides : flags, size, -offset.x, -offset.y,
                         offset.x + window.width - size.width, offset.y + window.height - size.height);
    checkCopy(r, name, scene, [&](const Scene<T>& s, Image<T>& dst) {
      return f(s.src.data(), s.src.step(), s.size, dst.data(), dst.step(), kind | flags, offset, window, s.value[0]);
    });
  }
}

template <class T>
void checkNewImage(const char* name, int channels,
                   T* (*f)(const T*, int32_t, OrvSize, int32_t, T, int32_t, int32_t, int32_t, int32_t)) {
  Random r(seed());
  const int32_t before = steeredLiveAllocations();
  for (int i = 0; i < rounds(250); ++i) {
    auto scene = randomScene<T>(r, channels, kinds[i % 5], 0);
    for (T& v : scene.value) v = scene.value[0];
    T* const image = f(scene.src.data(), scene.src.step(), scene.size, scene.kind, scene.value[0], scene.left,
                       scene.right, scene.top, scene.bottom);
    const auto at = [&](int x, int y) {
      T v;
      memcpy(&v, (const uint8_t*)image + ((ptrdiff_t)y * scene.whole().width * channels + x) * (ptrdiff_t)sizeof(T),
             sizeof v);
      return v;
    };
    scene.compare(name, at);
    CHECK(scene.src.unchanged());
    orvsFree((void*)image);
  }
  T pixel[3] = {};
  steerFailAllocation(1);
  CHECK(f(pixel, 1, {1, 1}, orvBorderMirr, 0, 1, 1, 1, 1) == nullptr, "%s", name);
  steerFailAllocation(0);
  // 65538 x 65538 bytes are 262148 once wrapped to 32 bits.
  CHECK(f(pixel, 1, {1, 1}, orvBorderMirr, 0, 65537, 0, 65537, 0) == nullptr, "%s", name);
  CHECK(steeredAllocations() == 0 && steeredLiveAllocations() == before, "%s", name);
}

// A strip, element by element in its told layout, and the extended row; a kind that is none leaves its parts alone.
template <class T, int C, class Fill>
void checkStrip(const char* name, const Fill& fill) {
  Random r(seed());
  for (int i = 0; i < rounds(6000); ++i) {
    const int width = r.in(1, 14), taps = r.one(10) ? r.in(20, 45) : r.in(1, 9), anchor = r.in(0, taps - 1);
    const int odd[] = {orvBorderInMem, 5, 7}, kind = r.one(5) ? odd[r.in(0, 2)] : kinds[r.in(0, 4)];
    const int type = kind | (r.one(2) ? 0 : r.in(0, 15) * 16);
    const int sides = kind == orvBorderInMem ? allSides : type & allSides, behind = taps - 1 - anchor;
    const Scene<T> scene(r, C, kind, sides & ~(orvBorderInMemTop | orvBorderInMemBottom), {width, 1}, anchor, 0, behind,
                         0);
    const int ends = std::min(taps - 1, width);
    Image<T> strip(r, taps - 1 + 2 * ends, 1, C), row(r, taps - 1 + width, 1, C);
    const bool noKind = kind == 5 || kind == 7;
    fill(scene.src.data(), strip.data(), width, taps, anchor, type, scene.value.data());
    extendRow<T, C>(scene.src.data(), row.data(), width, taps, anchor, type, scene.value.data());
    const Image<T> blank(r, 1, 1, 1);
    const auto compare = [&](const Image<T>& got, const char* what, int at, int p) {
      const bool left = p < 0 && noKind && !(sides & orvBorderInMemLeft);
      const bool right = p >= width && noKind && !(sides & orvBorderInMemRight);
      for (int c = 0; c < C; ++c) {
        const T want = left || right ? blank.at(0, 0) : scene.expected(p + anchor, 0, c), is = got.at(at * C + c, 0);
        CHECK(memcmp(&want, &is, sizeof(T)) == 0, "%s %s: width %d, %d taps, anchor %d, type %d, pixel %d", name, what,
              width, taps, anchor, type, p);
      }
    };
    for (int k = 0; k < anchor + ends; ++k) compare(strip, "strip", k, k - anchor);
    for (int k = 0; k < ends + behind; ++k) compare(strip, "strip", anchor + ends + k, width - ends + k);
    for (int k = 0; k < anchor + width + behind; ++k) compare(row, "row", k, k - anchor);
    CHECK(strip.onlyRegionChanged() && row.onlyRegionChanged() && scene.src.unchanged(), "%s", name);
  }
}

// FillBorder_* of one channel takes its value itself.
template <class T>
auto byValue(void (*f)(const T*, T*, int32_t, int32_t, int32_t, int32_t, T)) {
  return [f](const T* src, T* strip, int32_t width, int32_t taps, int32_t anchor, int32_t type, const T* value) {
    f(src, strip, width, taps, anchor, type, *value);
  };
}

// Packed bits, the least significant first.
int bitAt(const uint8_t* row, int p) { return row[p >> 3] >> (p & 7) & 1; }
void setBit(uint8_t* row, int p, int bit) { row[p >> 3] = (uint8_t)((row[p >> 3] & ~(1 << (p & 7))) | bit << (p & 7)); }

// One random copy of bits. Both images have just the bytes that hold wanted pixels; offsets may lead before the row.
void checkBits(Random& r) {
  const int type = r.in(0, 15) * 16 + (r.one(2) ? orvBorderInMem : orvBorderRepl);
  const int sides = type == orvBorderInMem ? allSides : type & allSides;
  const int left = r.in(0, 30), right = r.in(0, 30), top = r.in(0, 3), bottom = r.in(0, 3);
  const OrvSize size = {r.one(3) ? r.in(60, 200) : r.in(1, 40), r.in(1, 4)};
  const OrvSize whole = {left + size.width + right, top + size.height + bottom};
  const Margin m = marginOf(sides, left, top, right, bottom);
  const int srcOffset = r.in(-9, 17), dstOffset = r.in(-9, 17);
  const int srcFirst = (srcOffset - m.left) >> 3, srcLast = (srcOffset + size.width + m.right - 1) >> 3;
  const int dstFirst = dstOffset >> 3, dstLast = (dstOffset + whole.width - 1) >> 3;
  Image<uint8_t> src(r, srcLast - srcFirst + 1, m.top + size.height + m.bottom, 1);
  Image<uint8_t> dst(r, dstLast - dstFirst + 1, whole.height, 1);
  src.fill(r, true), dst.fill(r, true);
  const auto bytes = dst.elements();
  std::vector<uint8_t> expected;
  for (int y = 0; y < whole.height; ++y)
    for (int x = 0; x < bytes; ++x) expected.push_back(dst.at(x, y));
  const uint8_t* from = src.data() + (ptrdiff_t)m.top * src.step() - srcFirst;
  const std::function<int(int, int)> pixel = [&](int x, int y) {
    return bitAt(from + (ptrdiff_t)y * src.step(), srcOffset + x);
  };
  for (int y = 0; y < whole.height; ++y)
    for (int x = 0; x < whole.width; ++x)
      setBit(&expected[(size_t)(y * bytes)], dstOffset - 8 * dstFirst + x,
             reference::borderedPixel<int>(pixel, size, x - left, y - top, orvBorderRepl, sides, 0));

  uint8_t* to = dst.data() - dstFirst;
  const OrvStatus status = type == orvBorderRepl && r.one(2)
                               ? ownorviCopyReplicateBorder_1u_C1R(from, src.step(), srcOffset, size, to, dst.step(),
                                                                   dstOffset, whole, top, left)
                               : ownorviCopyInMemBorder_1u_C1R(from, src.step(), srcOffset, size, to, dst.step(),
                                                               dstOffset, whole, type, top, left);
  CHECK(status == orvStatusOk && src.unchanged() && dst.onlyRegionChanged());
  for (int i = 0; i < whole.height * bytes; ++i)
    if (dst.at(i % bytes, i / bytes) != expected[(size_t)i])
      return fail("bits: %dx%d, border %d %d %d %d, type %d, offsets %d %d: byte (%d, %d) is wrong", size.width,
                  size.height, left, top, right, bottom, type, srcOffset, dstOffset, i % bytes, i / bytes);
}

// The arguments that every copy into a larger image checks, and how to break them.
struct CopyArguments {
  const void* src;
  int32_t srcStep;
  OrvSize srcSize;
  void* dst;
  int32_t dstStep;
  OrvSize dstSize;
  int32_t top, left;
};

const std::vector<Check<CopyArguments>> copyChecks = {
    {"null src", orvStatusNullPtr, [](CopyArguments& a) { a.src = nullptr; }},
    {"null dst", orvStatusNullPtr, [](CopyArguments& a) { a.dst = nullptr; }},
    {"srcStep 0", orvStatusStep, [](CopyArguments& a) { a.srcStep = 0; }},
    {"dstStep -4", orvStatusStep, [](CopyArguments& a) { a.dstStep = -4; }},
    {"source width 0", orvStatusSize, [](CopyArguments& a) { a.srcSize.width = 0; }},
    {"source height 0", orvStatusSize, [](CopyArguments& a) { a.srcSize.height = 0; }},
    {"destination too narrow", orvStatusSize, [](CopyArguments& a) { --a.dstSize.width; }},
    {"destination too low", orvStatusSize, [](CopyArguments& a) { --a.dstSize.height; }},
    {"negative top", orvStatusSize, [](CopyArguments& a) { a.top = -1; }},
    {"negative left", orvStatusSize, [](CopyArguments& a) { a.left = -1; }},
    {"left near 2^31", orvStatusSize, [](CopyArguments& a) { a.left = INT32_MAX; }},
    {"top near 2^31", orvStatusSize, [](CopyArguments& a) { a.top = INT32_MAX; }},
};

// Walks copyChecks on a 3x2 image with a border of 2 on the left, 1 above, and none on the right and below.
void walkCopy(const std::function<OrvStatus(CopyArguments&)>& call) {
  Random r(seed());
  Image<uint8_t> src(r, 3 * 16, 2, 1), dst(r, 5 * 16, 3, 1);
  const CopyArguments valid = {src.data(), src.step(), {3, 2}, dst.data(), dst.step(), {5, 3}, 1, 2};
  walkChecks<CopyArguments>(valid, copyChecks, call, [&] { return src.unchanged() && dst.unchanged(); });
}

}  // namespace

TEST(index_rule) {
  for (const int kind : kinds)
    for (int n = 1; n <= 9; ++n)
      for (int p = -45; p <= 45; ++p) {
        const ptrdiff_t got = borderIndex(kind, p, n);
        const int want = reference::walkBorder(kind, p, n);
        CHECK(got == (want == reference::constant ? borderNoPixel : want), "kind %d, pixel %d of %d", kind, p, n);
      }
  // The ends of the range of a line: no product of lengths overflows.
  CHECK(borderIndex(orvBorderMirrR, -1, INT32_MAX) == 0 &&
        borderIndex(orvBorderMirr, INT32_MAX, INT32_MAX) == INT32_MAX - 2);
  CHECK(borderIndex(orvBorderWrap, INT32_MIN, 3) == 1 && borderIndex(orvBorderMirr, INT32_MIN, 2) == 0);
  CHECK(borderIndex(orvBorderMirr, -4, 3, true, false) == -4 && borderIndex(orvBorderMirr, 4, 3, true, false) == 0);
}

TEST(side_flags) {
  CHECK(sidesInMemory(6) == 240 && sidesInMemory(22) == 16 && sidesInMemory(6 | 192) == 192);
  CHECK(sidesInMemoryByKind(6) == 240 && sidesInMemoryByKind(22) == 240);
  CHECK(sidesInMemory(1 | 64) == 64 && sidesInMemoryByKind(1 | 64) == 64 && sidesInMemory(256) == 0);
}

TEST(row_strip) {
  checkStrip<uint8_t, 1>("8u_C1", byValue(FillBorder_8u_C1));
  checkStrip<int16_t, 1>("16s_C1", byValue(FillBorder_16s_C1));
  checkStrip<float, 1>("32f_C1", byValue(FillBorder_32f_C1));
  checkStrip<uint8_t, 3>("8u_C3", FillBorder_8u_C3);
  checkStrip<int16_t, 3>("16s_C3", FillBorder_16s_C3);
  checkStrip<float, 3>("32f_C3", FillBorder_32f_C3);
}

TEST(copy_const) {
  checkConst<uint8_t>("8u_C1R", orviCopyConstBorder_8u_C1R);
  checkConst<uint16_t>("16u_C1R", orviCopyConstBorder_16u_C1R);
  checkConst<int16_t>("16s_C1R", orviCopyConstBorder_16s_C1R);
  checkConst<int32_t>("32s_C1R", orviCopyConstBorder_32s_C1R);
  checkConst<float>("32f_C1R", orviCopyConstBorder_32f_C1R);
}

TEST(copy_replicate) {
  checkReplicate<uint8_t>("8u_C1R", 1, orviCopyReplicateBorder_8u_C1R, orviCopyReplicateBorder_8u_C1IR);
  checkReplicate<uint8_t>("8u_C3R", 3, orviCopyReplicateBorder_8u_C3R, orviCopyReplicateBorder_8u_C3IR);
  checkReplicate<uint8_t>("8u_C4R", 4, orviCopyReplicateBorder_8u_C4R, orviCopyReplicateBorder_8u_C4IR);
  checkReplicate<uint16_t>("16u_C1R", 1, orviCopyReplicateBorder_16u_C1R);
  checkReplicate<int16_t>("16s_C1R", 1, orviCopyReplicateBorder_16s_C1R, orviCopyReplicateBorder_16s_C1IR);
  checkReplicate<int32_t>("32s_C1R", 1, orviCopyReplicateBorder_32s_C1R, orviCopyReplicateBorder_32s_C1IR);
  checkReplicate<int32_t>("32s_C3R", 3, orviCopyReplicateBorder_32s_C3R, orviCopyReplicateBorder_32s_C3IR);
  checkReplicate<int32_t>("32s_C4R", 4, orviCopyReplicateBorder_32s_C4R, orviCopyReplicateBorder_32s_C4IR);
  checkReplicate<float>("32f_C1R", 1, orviCopyReplicateBorder_32f_C1R);
  checkReplicate<float>("32f_C3R", 3, orviCopyReplicateBorder_32f_C3R);
  checkReplicate<float>("32f_C4R", 4, orviCopyReplicateBorder_32f_C4R);
}

TEST(copy_in_memory) {
  checkInMem<uint8_t>("8u_C1R", 1, ownorviCopyInMemBorder_8u_C1R);
  checkInMem<uint8_t>("8u_C3R", 3, ownorviCopyInMemBorder_8u_C3R);
  checkInMem<uint8_t>("8u_C4R", 4, ownorviCopyInMemBorder_8u_C4R);
  checkInMem<int16_t>("16s_C1R", 1, ownorviCopyInMemBorder_16s_C1R);
  checkInMem<float>("32f_C1R", 1, ownorviCopyInMemBorder_32f_C1R);
  checkInMem<float>("32f_C3R", 3, ownorviCopyInMemBorder_32f_C3R);
  checkInMem<float>("32f_C4R", 4, ownorviCopyInMemBorder_32f_C4R);
}

TEST(bits) {
  Random r(seed());
  for (int i = 0; i < rounds(8000); ++i) checkBits(r);
}

TEST(windows) {
  checkWindow<uint8_t>("CopyWithBorder8u", CopyWithBorder8u);
  checkWindow<float>("CopyWithBorder32f", CopyWithBorder32f);
}

TEST(new_images) {
  checkNewImage<uint8_t>("8u_C1R", 1, ownCopyWithBorder_8u_C1R);
  checkNewImage<uint8_t>("8u_C3R", 3, ownCopyWithBorder_8u_C3R);
  checkNewImage<uint16_t>("16u_C1R", 1, ownCopyWithBorder_16u_C1R);
  checkNewImage<uint16_t>("16u_C3R", 3, ownCopyWithBorder_16u_C3R);
  checkNewImage<float>("32f_C1R", 1, ownCopyWithBorder_32f_C1R);
  checkNewImage<float>("32f_C3R", 3, ownCopyWithBorder_32f_C3R);
}

// One member of each body: the others are the same template.
TEST(statuses) {
  walkCopy([](CopyArguments& a) {
    return orviCopyConstBorder_32f_C1R((const float*)a.src, a.srcStep, a.srcSize, (float*)a.dst, a.dstStep, a.dstSize,
                                       a.top, a.left, 1.f);
  });
  walkCopy([](CopyArguments& a) {
    return orviCopyReplicateBorder_32f_C4R((const float*)a.src, a.srcStep, a.srcSize, (float*)a.dst, a.dstStep,
                                           a.dstSize, a.top, a.left);
  });
  walkCopy([](CopyArguments& a) {
    return ownorviCopyInMemBorder_8u_C3R((const uint8_t*)a.src, a.srcStep, a.srcSize, (uint8_t*)a.dst, a.dstStep,
                                         a.dstSize, orvBorderRepl, a.top, a.left);
  });
  walkCopy([](CopyArguments& a) {
    return ownorviCopyReplicateBorder_1u_C1R((const uint8_t*)a.src, a.srcStep, 5, a.srcSize, (uint8_t*)a.dst, a.dstStep,
                                             2, a.dstSize, a.top, a.left);
  });
  // In place there is one pointer and one step: the faults of the source are those of the destination.
  walkCopy([](CopyArguments& a) {
    uint8_t* const image = a.src ? (uint8_t*)a.dst : nullptr;
    return orviCopyReplicateBorder_8u_C3IR(image, a.srcStep >= 1 ? a.dstStep : 0, a.srcSize, a.dstSize, a.top, a.left);
  });
  uint8_t pixel = 0;
  CHECK(CopyWithBorder8u(nullptr, 0, {0, 0}, &pixel, 1, 0, {0, 0}, {1, 1}, 0) == orvStatusNullPtr);
  CHECK(CopyWithBorder8u(&pixel, 1, {0, 0}, &pixel, 0, 0, {0, 0}, {1, 1}, 0) == orvStatusStep);
  CHECK(CopyWithBorder8u(&pixel, 1, {1, 1}, &pixel, 1, 0, {0, 0}, {1, 0}, 0) == orvStatusSize);
}
