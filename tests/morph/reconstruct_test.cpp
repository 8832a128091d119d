// Reconstruction against repeated elementary steps, on random images, and corridors; sizes and statuses.
//
// One body serves both variants.
#include "distance/step_checks.h"
#include "reference/reconstruct.h"

using namespace test;

namespace {

enum class Content { random, fewSeeds, fromTheStart, fromTheEnd };

// A corridor of one pixel that winds along the shorter side, walls of 0.
template <class T>
void corridor(Image<T>& image) {
  const bool wide = image.elements() > image.height();
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.elements(); ++x) {
      const int along = wide ? x : y, across = wide ? y : x, last = (wide ? image.height() : image.elements()) - 1;
      image.set(x, y, T(along % 2 == 1 && across != (along % 4 == 1 ? last : 0) ? 0 : 200));
    }
}

template <class T>
struct Ground : ImageRole<T> {
  Content content;
  explicit Ground(Content c) : ImageRole<T>(In<T>()), content(c) {}
  void prepare(Random& r, const Shape& shape) {
    ImageRole<T>::prepare(r, shape);
    if (content >= Content::fromTheStart) corridor(*this->candidate), this->candidate->keep();
  }
};
// Values are cut to the ground's at first, so that a seed may be the highest of all.
template <class T>
struct Marker : ImageRole<T> {
  Content content;
  bool grow;
  Marker(Content c, bool grows) : ImageRole<T>(InOut<T>()), content(c), grow(grows) {}
  void prepare(Random& r, const Shape& shape) {
    ImageRole<T>::prepare(r, shape);
    const int start = content == Content::fromTheStart ? 0 : shape.height * shape.width - 1;
    for (int i = 0; i < shape.width * shape.height && content != Content::random; ++i) {
      const bool seed = content == Content::fewSeeds ? r.one(60) : i == start;
      for (auto* image : {&*this->candidate, &*this->expected})
        image->set(i % shape.width, i / shape.width, seed == grow ? highest<T>() : lowest<T>());
    }
    this->candidate->keep();
  }
};

template <class T>
using Reconstruct = OrvStatus (*)(const T*, int32_t, T*, int32_t, OrvSize, uint8_t*, int32_t);
using Bytes = OrvStatus (*)(OrvSize, int32_t*);

template <class T>
void check(const char* name, Reconstruct<T> function, Bytes size, Shape threaded, Content content) {
  const bool grow = strstr(name, "Dilate") != nullptr;
  const auto plain = [=](const T* mask, int32_t maskStep, T* marker, int32_t step, OrvSize roi, uint8_t*,
                         int32_t norm) { reference::reconstruct(mask, maskStep, marker, step, roi, norm, grow); };
  threaded.threaded = true;
  sweep(name, function, plain, threaded, Ground<T>(content), Marker<T>(content, grow), Roi(), Scratch(size),
        Value<int32_t>({0, 1}));
}

template <class T>
void checkBoth(const char* name, Reconstruct<T> function, Bytes size) {
  check(name, function, size, {40, 31}, Content::random);
  const Shape far[] = {{90, 40}, {131, 12}, {11, 60}, {90, 40}};  // by the size of an element
  check(name, function, size, far[__builtin_ctz(sizeof(T))], Content::fewSeeds);
  const std::vector<Told> order = pointersThenSizes({0, 1, 3}, 2) + stepsOf<T>({0, 1});
  walkArguments(name, function, order + std::vector<Told>{badValue(4, -1), badValue(4, 2)}, In<T>(), InOut<T>(), Roi(),
                Scratch(size), Value<int32_t>({0}));
}
#define CHECK_BOTH(type)                                                                                               \
  checkBoth("Dilate_" #type, orviMorphReconstructDilate_##type##_C1IR, orviMorphReconstructGetBufferSize_##type##_C1), \
      checkBoth("Erode_" #type, orviMorphReconstructErode_##type##_C1IR,                                               \
                orviMorphReconstructGetBufferSize_##type##_C1)

}  // namespace

TEST(bytes) { CHECK_BOTH(8u); }
TEST(words) { CHECK_BOTH(16u); }
TEST(floats) { CHECK_BOTH(32f); }
TEST(doubles) { CHECK_BOTH(64f); }

// Through the whole image, in every direction.
TEST(longWays) {
  const auto dilate = [](Shape shape, Content content) {
    check<uint8_t>("Dilate_8u", orviMorphReconstructDilate_8u_C1IR, orviMorphReconstructGetBufferSize_8u_C1, shape,
                   content);
  };
  dilate({41, 39}, Content::fromTheStart), dilate({39, 41}, Content::fromTheEnd);
  dilate({91, 17}, Content::fromTheEnd), dilate({17, 91}, Content::fromTheStart);
}

TEST(sizes) {
  const OrvSize roi = {100, 30};
  int32_t size = 0;
  const auto general = orviMorphReconstructGetBufferSize;
  const struct {
    OrvDataType type;
    int32_t bytes;
    Bytes own;
  } cases[] = {{orvData8u, 591, orviMorphReconstructGetBufferSize_8u_C1},
               {orvData16u, 1182, orviMorphReconstructGetBufferSize_16u_C1},
               {orvData32f, 1794, orviMorphReconstructGetBufferSize_32f_C1},
               {orvData64f, 3398, orviMorphReconstructGetBufferSize_64f_C1}};
  for (const auto& c : cases) {
    CHECK(general(roi, c.type, 1, &size) == orvStatusOk && size == c.bytes);
    size = 0;
    CHECK(c.own(roi, &size) == orvStatusOk && size == c.bytes);
    CHECK(c.own(roi, nullptr) == orvStatusNullPtr && c.own({1, 0}, &size) == orvStatusSize);
  }
  CHECK(general({0, 1}, 0, 0, nullptr) == orvStatusNullPtr && general({0, 1}, 0, 0, &size) == orvStatusSize);
  CHECK(general(roi, 3, 0, &size) == orvStatusDataType && general(roi, 1, 3, &size) == orvStatusChannels);
}
