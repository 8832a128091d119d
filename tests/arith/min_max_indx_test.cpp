// Extrema with their positions.
// One body serves both variants.
#include "statistics_cases.h"

using namespace test;

namespace {

template <class T>
struct Members {
  const char* type;
  OrvStatus (*plain)(const T*, int32_t, OrvSize, float*, float*, OrvPoint*, OrvPoint*);
  OrvStatus (*channel)(const T*, int32_t, OrvSize, int32_t, float*, float*, OrvPoint*, OrvPoint*);
  OrvStatus (*masked)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, float*, float*, OrvPoint*, OrvPoint*);
  OrvStatus (*maskedChannel)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, int32_t, float*, float*, OrvPoint*,
                             OrvPoint*);
};
#define MEMBERS(tag)                                                                            \
  {                                                                                             \
#tag, orviMinMaxIndx_##tag##_C1R, orviMinMaxIndx_##tag##_C3CR, orviMinMaxIndx_##tag##_C1MR, \
        orviMinMaxIndx_##tag##_C3CMR                                                            \
  }
const Members<uint8_t> of8u = MEMBERS(8u);
const Members<int8_t> of8s = MEMBERS(8s);
const Members<uint16_t> of16u = MEMBERS(16u);
const Members<float> of32f = MEMBERS(32f);

// A position as two numbers, for the comparison of results.
struct Position : Result<int32_t> {
  Position() : Result<int32_t>(2) {}
  std::tuple<OrvPoint*> arguments(Side side) {
    return {(OrvPoint*)(void*)std::get<0>(Result<int32_t>::arguments(side))};
  }
};

// Sweeps one member, whatever stands between its source and its results, and walks its checks.
template <class T, class Function, class... Role>
void check(const char* name, Function f, int channels, const std::vector<Told>& order, Role... roles) {
  const auto plain = reference::member<T>(channels, [](const auto& p, auto*... out) { extrema(p, out...); });
  const Result<float> value;
  const Position at;
  for (const Shape threaded : {Shape{131, 127}, Shape{2500, 9}, Shape{17000, 3}}) {
    sweep(name, f, plain, threaded, wild(In<T>(channels)), roles..., value, value, at, at);
    if (quick()) break;
  }
  walkArguments(name, f, order, In<T>(channels), roles..., value, value, at, at);
}

template <class T>
void checkAll(const Members<T>& m) {
  const Context context(m.type);
  check<T>("C1R", m.plain, 1, orderOfChecks<T>(1, false, 0), Roi());
  check<T>("C3CR", m.channel, 3, orderOfChecks<T>(1, false, 0, 2), Roi(), Coi());
  check<T>("C1MR", m.masked, 1, orderOfChecks<T>(1, true, 0), Mask(), Roi());
  check<T>("C3CMR", m.maskedChannel, 3, orderOfChecks<T>(1, true, 0, 3), Mask(), Roi(), Coi());
}

// A flat image with equal extremes planted in several bands and blocks; the first under the mask counts.
template <class T>
void ties(const Members<T>& m, T flat, T low, T high) {
  Random r(seed());
  const OrvSize roi{300, 700};
  for (int round = 0; round < (quick() ? 2 : 12); ++round) {
    std::vector<T> image((size_t)(roi.width * roi.height), flat);
    std::vector<uint8_t> mask(image.size(), 0);
    // Set from some row on: whole bands of a team stay empty.
    for (size_t i = (size_t)r.in(0, (int)mask.size() - 1); i < mask.size(); ++i) mask[i] = r.one(3) ? 255 : 0;
    // Maxima grow where minima tie.
    for (int k = 0; k < 40; ++k) {
      const auto i = (size_t)r.in(0, (int)image.size() - 2);
      image[i] = low, image[i + 1] = i < image.size() / 2 ? (T)(flat / 2 + high / 2) : high;
    }
    const int32_t step = roi.width * (int32_t)sizeof(T);
    float low, high, wantLow, wantHigh;
    OrvPoint at[2], want[2];
    const reference::Pixels<T> pixels{image.data(), step, mask.data(), roi.width, roi};
    reference::extrema(pixels, &wantLow, &wantHigh, &want[0], &want[1]);
    forEachSetting(true, [&] {
      m.masked(image.data(), step, mask.data(), roi.width, roi, &low, &high, &at[0], &at[1]);
      CHECK(low == wantLow && high == wantHigh && !memcmp(at, want, sizeof at), "%s: %g at %d %d, %g at %d %d", m.type,
            low, at[0].x, at[0].y, high, at[1].x, at[1].y);
    });
  }
}

}  // namespace

TEST(members) {
  checkAll(of8u);
  checkAll(of8s);
  checkAll(of16u);
  checkAll(of32f);
}

TEST(first_of_equal_pixels) {
  ties<uint8_t>(of8u, 7, 0, 255);
  ties<uint8_t>(of8u, 255, 255, 255);
  ties<int8_t>(of8s, -1, -128, 127);
  ties<uint16_t>(of16u, 40000, 39999, 40001);
  ties<float>(of32f, 0.5f, -INFINITY, INFINITY);
  ties<float>(of32f, INFINITY, INFINITY, INFINITY);
}

// The zero that is reported is the pixel's own, with its sign.
TEST(signed_zeros) {
  const float image[] = {5, -0.f, 0.f, 1, 2};
  forEachSetting(false, [&] {
    float low = 9;
    orviMinMaxIndx_32f_C1R(image, 20, {5, 1}, &low, nullptr, nullptr, nullptr);
    CHECK(low == 0 && signbit(low));
  });
}

TEST(results_may_be_left_out) {
  const uint8_t image[] = {4, 9, 2};
  for (int given = 0; given < 16; ++given) {
    float low = -1, high = -1;
    OrvPoint p{-1, -1}, q{-1, -1};
    CHECK(orviMinMaxIndx_8u_C1R(image, 3, {3, 1}, given & 1 ? &low : nullptr, given & 2 ? &high : nullptr,
                                given & 4 ? &p : nullptr, given & 8 ? &q : nullptr) == orvStatusOk);
    CHECK(low == (given & 1 ? 2 : -1) && high == (given & 2 ? 9 : -1));
    CHECK(p.x == (given & 4 ? 2 : -1) && q.x == (given & 8 ? 1 : -1));
  }
}
