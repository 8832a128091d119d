// The argument checks of the primitives.
#include "core/primitives.h"
#include "framework/sweep.h"

using namespace test;

namespace {

// Arguments of any primitive; memory that serves every type.
struct Arguments {
  void *src1, *src2, *dst;
  int32_t step1, step2, dstStep;
  OrvSize roi;
  int32_t compare;
};

using Call = std::function<OrvStatus(const Arguments&)>;
using Checks = std::vector<Check<Arguments>>;

double memory[3][64];

// `sources` of the two are arguments; `image` tells whether there are steps, `compared` whether compare is tested.
void walk(const char* name, int sources, bool image, bool compared, const Call& call) {
  const Context context(name);
  memset(memory, 0x35, sizeof memory);
  Checks checks;
  if (compared) {
    checks.push_back({"compare", orvStatusNotSupported, [](Arguments& a) { a.compare = 1; }});
    checks.push_back({"compare", orvStatusNotSupported, [](Arguments& a) { a.compare = 5; }});
  }
  if (sources > 0) checks.push_back({"src1", orvStatusNullPtr, [](Arguments& a) { a.src1 = nullptr; }});
  if (sources > 1) checks.push_back({"src2", orvStatusNullPtr, [](Arguments& a) { a.src2 = nullptr; }});
  checks.push_back({"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }});
  checks.push_back({"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }});
  if (image) {
    checks.push_back({"height", orvStatusSize, [](Arguments& a) { a.roi.height = -1; }});
    if (sources > 0) checks.push_back({"src1 step", orvStatusStep, [](Arguments& a) { a.step1 = 0; }});
    if (sources > 1) checks.push_back({"src2 step", orvStatusStep, [](Arguments& a) { a.step2 = -8; }});
    checks.push_back({"dst step", orvStatusStep, [](Arguments& a) { a.dstStep = 0; }});
  }
  walkChecks<Arguments>(
      {memory[0], memory[1], memory[2], 128, 128, 128, {4, 3}, 4}, checks, [&](Arguments& a) { return call(a); },
      [] {
        for (size_t i = 0; i < sizeof memory; ++i)
          if (((const uint8_t*)memory)[i] != 0x35) return false;
        return true;
      });
}

// Each kind of signature once: the rest of the arguments follow the pointers.
template <class D>
void vector0(const char* name, OrvStatus (*f)(D*, int32_t)) {
  walk(name, 0, false, false, [f](const Arguments& a) { return f((D*)a.dst, a.roi.width); });
}
template <class D>
void vectorSet(const char* name, OrvStatus (*f)(D, D*, int32_t)) {
  walk(name, 0, false, false, [f](const Arguments& a) { return f((D)1, (D*)a.dst, a.roi.width); });
}
template <class T>
void vector1(const char* name, OrvStatus (*f)(const T*, T*, int32_t)) {
  walk(name, 1, false, false, [f](const Arguments& a) { return f((T*)a.src1, (T*)a.dst, a.roi.width); });
}
template <class T>
void vector2(const char* name, OrvStatus (*f)(const T*, const T*, T*, int32_t)) {
  walk(name, 2, false, false, [f](const Arguments& a) { return f((T*)a.src1, (T*)a.src2, (T*)a.dst, a.roi.width); });
}
template <class S, class D>
void image1(const char* name, OrvStatus (*f)(const S*, int32_t, D*, int32_t, OrvSize)) {
  walk(name, 1, true, false, [f](const Arguments& a) { return f((S*)a.src1, a.step1, (D*)a.dst, a.dstStep, a.roi); });
}
template <class T, class... Scale>
void image2(const char* name, OrvStatus (*f)(const T*, int32_t, const T*, int32_t, T*, int32_t, OrvSize, Scale...),
            Scale... scale) {
  walk(name, 2, true, false, [=](const Arguments& a) {
    return f((T*)a.src1, a.step1, (T*)a.src2, a.step2, (T*)a.dst, a.dstStep, a.roi, scale...);
  });
}
template <class T>
void threshold(const char* name, OrvStatus (*f)(const T*, int32_t, T*, int32_t, OrvSize, T, T, int32_t)) {
  walk(name, 1, true, true,
       [f](const Arguments& a) { return f((T*)a.src1, a.step1, (T*)a.dst, a.dstStep, a.roi, 1, 2, a.compare); });
}

}  // namespace

TEST(vectors) {
  vector0("orvsZero_8u", orvsZero_8u);
  vector0("orvsZero_32f", orvsZero_32f);
  vectorSet("orvsSet_8u", orvsSet_8u);
  vectorSet("orvsSet_32s", orvsSet_32s);
  vector1("orvsCopy_16s", orvsCopy_16s);
  vector1("orvsSqrt_32f", orvsSqrt_32f);
  vector1("orvsMinEvery_8u_I", orvsMinEvery_8u_I);
  vector1("orvsMaxEvery_64f_I", orvsMaxEvery_64f_I);
  vector2("orvsMinEvery_32f", orvsMinEvery_32f);
  vector2("orvsMaxEvery_16u", orvsMaxEvery_16u);
  vector2("orvsMagnitude_32f", orvsMagnitude_32f);
  vector2("orvsAtan2_32f_A21", orvsAtan2_32f_A21);
  walk("orvsMagnitude_16s_Sfs", 2, false, false, [](const Arguments& a) {
    return orvsMagnitude_16s_Sfs((int16_t*)a.src1, (int16_t*)a.src2, (int16_t*)a.dst, a.roi.width, 1);
  });
}

TEST(images) {
  image1("orviCopy_8u_C3R", orviCopy_8u_C3R);
  image1("orviCopy_32f_C4R", orviCopy_32f_C4R);
  image1("orviConvert_16u32f_C1R", orviConvert_16u32f_C1R);
  image1("orviConvert_8u32f_C3R", orviConvert_8u32f_C3R);
  image2("orviSub_32f_C3R", orviSub_32f_C3R);
  image2("orviSub_8u_C4RSfs", orviSub_8u_C4RSfs, 1);
  image2("orviSub_16u_C1RSfs", orviSub_16u_C1RSfs, 0);
  image2("orviSub_16s_C1RSfs", orviSub_16s_C1RSfs, -1);
  threshold("orviThreshold_Val_8u_C1R", orviThreshold_Val_8u_C1R);
  threshold("orviThreshold_Val_16u_C1R", orviThreshold_Val_16u_C1R);
  walk("orviThreshold_32f_C1R", 1, true, true, [](const Arguments& a) {
    return orviThreshold_32f_C1R((float*)a.src1, a.step1, (float*)a.dst, a.dstStep, a.roi, a.compare, 1.f);
  });
  walk("orviMulC_32f_C1R", 1, true, false, [](const Arguments& a) {
    return orviMulC_32f_C1R((float*)a.src1, a.step1, 2.f, (float*)a.dst, a.dstStep, a.roi);
  });
  walk("orviMulC_16s_C1RSfs", 1, true, false, [](const Arguments& a) {
    return orviMulC_16s_C1RSfs((int16_t*)a.src1, a.step1, 2, (int16_t*)a.dst, a.dstStep, a.roi, 0);
  });
  walk("orviSet_8u_C1R", 0, true, false,
       [](const Arguments& a) { return orviSet_8u_C1R(1, (uint8_t*)a.dst, a.dstStep, a.roi); });
  walk("orviSet_16s_C1R", 0, true, false,
       [](const Arguments& a) { return orviSet_16s_C1R(1, (int16_t*)a.dst, a.dstStep, a.roi); });
}
