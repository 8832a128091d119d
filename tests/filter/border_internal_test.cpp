// The border rule, the row strips and the copies with borders, against the walked rule. Sources have readable pixels
// only where a side is in memory, and often end at a protected page.
#include "filter/border_copy.h"
#include "filter/row_border.h"
#include "core/primitives.h"
#include "framework/sweep.h"
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

  Scene(Random& r, int pixelChannels, int kindOfBorder, int memory, OrvSize s, int l, int t, int rt, int b)
      : channels(pixelChannels),
        kind(kindOfBorder),
        sides(memory),
        size(s),
        left(l),
        top(t),
        right(rt),
        bottom(b),
        value((size_t)channels),
        src(r, s.width, s.height, channels, marginOf(memory, positive(l), positive(t), positive(rt), positive(b))) {
    src.fill(r, true);
    for (T& v : value) v = randomElement<T>(r, true);
  }
  static int positive(int n) { return n > 0 ? n : 0; }
  OrvSize whole() const { return {size.width + left + right, size.height + top + bottom}; }

  T expected(int x, int y, int channel) const {
    return reference::borderedPixel<T>(src.data(), src.step(), size, x - left, y - top, kind | sides,
                                       value[(size_t)channel], channels, channel);
  }

  // Whether `pixel(x, y)`, x in elements, is the expected picture; sNaNs and signs of zero count.
  template <class Pixel>
  void compare(const Pixel& pixel) const {
    for (int y = 0; y < whole().height; ++y)
      for (int x = 0; x < whole().width * channels; ++x) {
        const T want = expected(x / channels, y, x % channels), got = pixel(x, y);
        if (memcmp(&want, &got, sizeof(T)) == 0) continue;
        return fail(
            "%zu bytes, %d channels, %dx%d, border %d %d %d %d, kind %d, sides %d: element (%d, %d) is %g, not %g",
            sizeof(T), channels, size.width, size.height, left, top, right, bottom, kind, sides, x, y, (double)got,
            (double)want);
      }
  }

  template <class F, class... Rest>
  OrvStatus copy(F f, Image<T>& dst, Rest... rest) const {
    return f(src.data(), src.step(), size, dst.data(), dst.step(), whole(), rest...);
  }
};

// The sides in memory: of the types with orvBorderInMem only the value as a whole stands for four.
int sidesOf(int type) { return type == orvBorderInMem ? allSides : type & allSides; }
// A type of the copies that repeat what isn't in memory, with all flags.
int typeInMemory(Random& r) { return r.in(0, 15) * 16 + (r.one(2) ? orvBorderInMem : orvBorderRepl); }

template <class T>
Scene<T> randomScene(Random& r, int channels, int kind, int sides = 0) {
  const auto border = [&] { return r.one(4) ? 0 : r.one(5) ? r.in(5, 40) : r.in(1, 4); };
  const OrvSize size = {randomLength(r), r.in(1, 9)};
  return Scene<T>(r, channels, kind, sides, size, border(), border(), border(), border());
}

// Each copy(scene, dst) must write the expected picture of the scenes that `draw` makes to dst, and nothing else.
template <class T, class Draw, class... Copy>
void checkCopies(int count, const Draw& draw, const Copy&... copies) {
  Random r(seed());
  for (int i = 0; i < rounds(count); ++i) {
    const Scene<T> scene = draw(r);
    const auto check = [&](const auto& copy) {
      Image<T> dst(r, scene.whole().width, scene.whole().height, scene.channels);
      const OrvStatus status = copy(scene, dst);
      scene.compare([&](int x, int y) { return dst.at(x, y); });
      CHECK(status == orvStatusOk && dst.onlyRegionChanged() && scene.src.unchanged());
    };
    (check(copies), ...);
  }
}

// A copy into a larger image. The lists below hold the forms of 1, 3 and 4 channels, in this order.
template <class T, class... Rest>
using Copy = OrvStatus (*)(const T*, int32_t, OrvSize, T*, int32_t, OrvSize, Rest...);
template <class T>
using InPlace = OrvStatus (*)(T*, int32_t, OrvSize, OrvSize, int32_t, int32_t);
constexpr int channelsOf[] = {1, 3, 4};

template <class T>
void checkConst(Copy<T, int32_t, int32_t, T> f) {
  checkCopies<T>(
      300, [](Random& r) { return randomScene<T>(r, 1, orvBorderConst); },
      [&](const Scene<T>& s, Image<T>& dst) { return s.copy(f, dst, s.top, s.left, s.value[0]); });
}

// Into another image; with the source in the destination already, by either form.
template <class T>
void checkReplicate(const std::vector<Copy<T, int32_t, int32_t>>& forms, const std::vector<InPlace<T>>& inPlace) {
  for (size_t i = 0; i < forms.size(); ++i)
    checkCopies<T>(
        300, [&](Random& r) { return randomScene<T>(r, channelsOf[i], orvBorderRepl); },
        [&](const Scene<T>& s, Image<T>& dst) { return s.copy(forms[i], dst, s.top, s.left); },
        [&](const Scene<T>& s, Image<T>& dst) {
          for (int y = 0; y < s.size.height; ++y)
            for (int x = 0; x < s.size.width * s.channels; ++x)
              dst.set(x + s.left * s.channels, y + s.top, s.src.at(x, y));
          return i < inPlace.size() && s.left % 2
                     ? inPlace[i](dst.data(), dst.step(), s.size, s.whole(), s.top, s.left)
                     : forms[i](dst.data(), 1, s.size, dst.data(), dst.step(), s.whole(), s.top, s.left);
        });
}

template <class T>
void checkInMem(const std::vector<Copy<T, int32_t, int32_t, int32_t>>& forms) {
  int type = 0;
  for (size_t i = 0; i < forms.size(); ++i)
    checkCopies<T>(
        400,
        [&](Random& r) {
          type = typeInMemory(r);
          return randomScene<T>(r, channelsOf[i], orvBorderRepl, sidesOf(type));
        },
        [&](const Scene<T>& s, Image<T>& dst) { return s.copy(forms[i], dst, type, s.top, s.left); });
}

template <class T>
void checkWindow(OrvStatus (*f)(const T*, int32_t, OrvSize, T*, int32_t, int32_t, OrvPoint, OrvSize, T)) {
  int type = 0;
  OrvPoint offset{};
  checkCopies<T>(
      800,
      [&](Random& r) {
        const int kind = r.one(8) ? (int)orvBorderInMem : kinds[r.in(0, 4)], flags = r.one(3) ? 0 : r.in(0, 15) * 16;
        const OrvSize size = {randomLength(r), r.in(1, 9)}, window = {randomLength(r), r.in(1, 9)};
        type = kind | flags;
        offset = {r.in(-window.width - 3, size.width + 3), r.in(-window.height - 3, size.height + 3)};
        return Scene<T>(r, 1, kind, kind == orvBorderInMem ? allSides : flags, size, -offset.x, -offset.y,
                        offset.x + window.width - size.width, offset.y + window.height - size.height);
      },
      [&](const Scene<T>& s, Image<T>& dst) {
        return f(s.src.data(), s.src.step(), s.size, dst.data(), dst.step(), type, offset, s.whole(), s.value[0]);
      });
}

template <class T>
void checkNewImage(int channels, T* (*f)(const T*, int32_t, OrvSize, int32_t, T, int32_t, int32_t, int32_t, int32_t)) {
  Random r(seed());
  const int32_t before = steeredLiveAllocations();
  for (int i = 0; i < rounds(250); ++i) {
    auto s = randomScene<T>(r, channels, kinds[i % 5]);
    for (T& v : s.value) v = s.value[0];
    T* const image = f(s.src.data(), s.src.step(), s.size, s.kind, s.value[0], s.left, s.right, s.top, s.bottom);
    s.compare([&](int x, int y) { return reference::load(image, s.whole().width * channels * (int)sizeof(T), y, x); });
    CHECK(s.src.unchanged());
    orvsFree((void*)image);
  }
  T pixel[3] = {};
  steerFailAllocation(1);
  CHECK(f(pixel, 1, {1, 1}, orvBorderMirr, 0, 1, 1, 1, 1) == nullptr);
  steerFailAllocation(0);
  // 65538 x 65538 bytes are 262148 once wrapped to 32 bits.
  CHECK(f(pixel, 1, {1, 1}, orvBorderMirr, 0, 65537, 0, 65537, 0) == nullptr);
  CHECK(steeredAllocations() == 0 && steeredLiveAllocations() == before);
}

// A strip, element by element in its told layout, and the extended row; a kind that is none leaves its parts alone.
template <class T, int C, class Fill>
void checkStrip(const Fill& fill) {
  Random r(seed());
  for (int i = 0; i < rounds(6000); ++i) {
    const int width = r.in(1, 14), taps = r.one(10) ? r.in(20, 45) : r.in(1, 9), anchor = r.in(0, taps - 1);
    const int odd[] = {orvBorderInMem, 5, 7}, kind = r.one(5) ? odd[r.in(0, 2)] : kinds[r.in(0, 4)];
    const int type = kind | (r.one(2) ? 0 : r.in(0, 15) * 16), behind = taps - 1 - anchor;
    const int sides = kind == orvBorderInMem ? allSides : type & allSides;
    const int beside = sides & (orvBorderInMemLeft | orvBorderInMemRight), ends = std::min(taps - 1, width);
    const Scene<T> scene(r, C, kind, beside, {width, 1}, anchor, 0, behind, 0);
    const Image<T> blank(r, 1, 1, 1);
    // Element k * C + c of a strip or row whose pixel k stands for pixel p.
    const auto want = [&](int p, int c) {
      const bool unmade = p < 0 ? !(sides & orvBorderInMemLeft) : p >= width && !(sides & orvBorderInMemRight);
      return unmade && (kind == 5 || kind == 7) ? blank.at(0, 0) : scene.expected(p + anchor, 0, c);
    };
    const auto check = [&](const char* what, int pixels, auto&& make, const auto& pixelAt) {
      const Context context(std::string(what) + " of " + std::to_string(width) + ", " + std::to_string(taps) +
                            " taps, anchor " + std::to_string(anchor) + ", type " + std::to_string(type));
      Image<T> image(r, pixels, 1, C);
      make(scene.src.data(), image.data(), width, taps, anchor, type, scene.value.data());
      expectImage(image, [&](int x, int) { return want(pixelAt(x / C), x % C); });
    };
    check("strip", taps - 1 + 2 * ends, fill,
          [&](int k) { return k < anchor + ends ? k - anchor : k - anchor - 2 * ends + width; });
    check("row", taps - 1 + width, extendRow<T, C>, [&](int k) { return k - anchor; });
    CHECK(scene.src.unchanged());
  }
}

// FillBorder_* of one channel takes its value itself.
template <class T>
void checkStrips(void (*one)(const T*, T*, int32_t, int32_t, int32_t, int32_t, T),
                 void (*three)(const T*, T*, int32_t, int32_t, int32_t, int32_t, const T*)) {
  checkStrip<T, 1>([&](const T* src, T* strip, int32_t width, int32_t taps, int32_t anchor, int32_t type,
                       const T* value) { one(src, strip, width, taps, anchor, type, *value); });
  checkStrip<T, 3>(three);
}

// Packed bits, the least significant first.
int bitAt(const uint8_t* row, int p) { return row[p >> 3] >> (p & 7) & 1; }
void setBit(uint8_t* row, int p, int bit) { row[p >> 3] = (uint8_t)((row[p >> 3] & ~(1 << (p & 7))) | bit << (p & 7)); }

// One random copy of bits. Both images have just the bytes that hold wanted pixels; offsets may lead before the row.
void checkBits(Random& r) {
  const int type = typeInMemory(r), sides = sidesOf(type);
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
  for (int y = 0; y < whole.height; ++y)
    for (int x = 0; x < whole.width; ++x) {
      const uint8_t* line =
          from + (ptrdiff_t)reference::borderRow(orvBorderRepl | sides, y - top, size.height) * src.step();
      const int column = reference::borderPixel(orvBorderRepl | sides, x - left, size.width);
      setBit(&expected[(size_t)(y * bytes)], dstOffset - 8 * dstFirst + x, bitAt(line, srcOffset + column));
    }

  uint8_t* to = dst.data() - dstFirst;
  const OrvStatus status = type == orvBorderRepl && r.one(2)
                               ? ownorviCopyReplicateBorder_1u_C1R(from, src.step(), srcOffset, size, to, dst.step(),
                                                                   dstOffset, whole, top, left)
                               : ownorviCopyInMemBorder_1u_C1R(from, src.step(), srcOffset, size, to, dst.step(),
                                                               dstOffset, whole, type, top, left);
  const Context context("border " + std::to_string(left) + " " + std::to_string(top) + ", type " +
                        std::to_string(type));
  CHECK(status == orvStatusOk && src.unchanged(), "offsets %d %d", srcOffset, dstOffset);
  expectImage(dst, [&](int x, int y) { return expected[(size_t)(y * bytes + x)]; });
}

// The checks that every copy into a larger image makes. The image is 13 x 5 pixels, the border 2 on the left, 1 above,
// and none on the right and below.
template <class T, class F>
void walkCopy(const F& f) {
  const auto size = [](int position, double value) { return badValue(position, value, orvStatusSize); };
  const auto call = [&](const T* src, int32_t srcStep, OrvSize roi, T* dst, int32_t dstStep, int w, int h, int top,
                        int left) {
    return f(src, srcStep, roi, dst, dstStep, OrvSize{w, h}, top, left);
  };
  walkArguments(
      "copy", call,
      eachOf(Fault::null, {0, 2}) + std::vector<Told>{badValue(0, 0, orvStatusStep), badValue(2, -4, orvStatusStep)} +
          pointersThenSizes({}, 1) +
          std::vector<Told>{size(3, 14), size(4, 5), size(5, -1), size(6, -1), size(6, INT32_MAX), size(5, INT32_MAX)},
      In<T>(4), Roi(), Out<T>(16), Value<int32_t>({15}), Value<int32_t>({6}), Value<int32_t>({1}), Value<int32_t>({2}));
}

}  // namespace

TEST(long_lines) {
  // The ends of the range of a line: no product of lengths overflows.
  CHECK(borderIndex(orvBorderMirrR, -1, INT32_MAX) == 0 &&
        borderIndex(orvBorderMirr, INT32_MAX, INT32_MAX) == INT32_MAX - 2);
  CHECK(borderIndex(orvBorderWrap, INT32_MIN, 3) == 1 && borderIndex(orvBorderMirr, INT32_MIN, 2) == 0);
  CHECK(borderIndex(orvBorderMirr, -4, 3, true, false) == -4 && borderIndex(orvBorderMirr, 4, 3, true, false) == 0);
}

TEST(row_strip) {
  checkStrips(FillBorder_8u_C1, FillBorder_8u_C3);
  checkStrips(FillBorder_16s_C1, FillBorder_16s_C3);
  checkStrips(FillBorder_32f_C1, FillBorder_32f_C3);
}

TEST(copy_const) {
  checkConst(orviCopyConstBorder_8u_C1R);
  checkConst(orviCopyConstBorder_16u_C1R);
  checkConst(orviCopyConstBorder_16s_C1R);
  checkConst(orviCopyConstBorder_32s_C1R);
  checkConst(orviCopyConstBorder_32f_C1R);
}

TEST(copy_replicate) {
  checkReplicate<uint8_t>(
      {orviCopyReplicateBorder_8u_C1R, orviCopyReplicateBorder_8u_C3R, orviCopyReplicateBorder_8u_C4R},
      {orviCopyReplicateBorder_8u_C1IR, orviCopyReplicateBorder_8u_C3IR, orviCopyReplicateBorder_8u_C4IR});
  checkReplicate<uint16_t>({orviCopyReplicateBorder_16u_C1R}, {});
  checkReplicate<int16_t>({orviCopyReplicateBorder_16s_C1R}, {orviCopyReplicateBorder_16s_C1IR});
  checkReplicate<int32_t>(
      {orviCopyReplicateBorder_32s_C1R, orviCopyReplicateBorder_32s_C3R, orviCopyReplicateBorder_32s_C4R},
      {orviCopyReplicateBorder_32s_C1IR, orviCopyReplicateBorder_32s_C3IR, orviCopyReplicateBorder_32s_C4IR});
  checkReplicate<float>(
      {orviCopyReplicateBorder_32f_C1R, orviCopyReplicateBorder_32f_C3R, orviCopyReplicateBorder_32f_C4R}, {});
}

TEST(copy_in_memory) {
  checkInMem<uint8_t>({ownorviCopyInMemBorder_8u_C1R, ownorviCopyInMemBorder_8u_C3R, ownorviCopyInMemBorder_8u_C4R});
  checkInMem<int16_t>({ownorviCopyInMemBorder_16s_C1R});
  checkInMem<float>({ownorviCopyInMemBorder_32f_C1R, ownorviCopyInMemBorder_32f_C3R, ownorviCopyInMemBorder_32f_C4R});
}

TEST(bits) {
  Random r(seed());
  for (int i = 0; i < rounds(8000); ++i) checkBits(r);
}

TEST(windows) {
  checkWindow(CopyWithBorder8u);
  checkWindow(CopyWithBorder32f);
}

TEST(new_images) {
  checkNewImage(1, ownCopyWithBorder_8u_C1R), checkNewImage(3, ownCopyWithBorder_8u_C3R);
  checkNewImage(1, ownCopyWithBorder_16u_C1R), checkNewImage(3, ownCopyWithBorder_16u_C3R);
  checkNewImage(1, ownCopyWithBorder_32f_C1R), checkNewImage(3, ownCopyWithBorder_32f_C3R);
}

// One member of each body: the others are the same template.
TEST(statuses) {
  walkCopy<float>([](auto... arguments) { return orviCopyConstBorder_32f_C1R(arguments..., 1.f); });
  walkCopy<float>(orviCopyReplicateBorder_32f_C4R);
  walkCopy<uint8_t>([](auto src, auto srcStep, auto size, auto dst, auto dstStep, auto whole, auto... rest) {
    return ownorviCopyInMemBorder_8u_C3R(src, srcStep, size, dst, dstStep, whole, orvBorderRepl, rest...);
  });
  walkCopy<uint8_t>([](auto src, auto srcStep, auto size, auto dst, auto dstStep, auto... rest) {
    return ownorviCopyReplicateBorder_1u_C1R(src, srcStep, 5, size, dst, dstStep, 2, rest...);
  });
  // In place there is one pointer and one step: the faults of the source are those of the destination.
  walkCopy<uint8_t>([](auto src, auto srcStep, auto size, auto dst, auto dstStep, auto... rest) {
    return orviCopyReplicateBorder_8u_C3IR(src ? dst : nullptr, srcStep >= 1 ? dstStep : 0, size, rest...);
  });
  uint8_t pixel = 0;
  CHECK(CopyWithBorder8u(nullptr, 0, {0, 0}, &pixel, 1, 0, {0, 0}, {1, 1}, 0) == orvStatusNullPtr);
  CHECK(CopyWithBorder8u(&pixel, 1, {0, 0}, &pixel, 0, 0, {0, 0}, {1, 1}, 0) == orvStatusStep);
  CHECK(CopyWithBorder8u(&pixel, 1, {1, 1}, &pixel, 1, 0, {0, 0}, {1, 0}, 0) == orvStatusSize);
}
