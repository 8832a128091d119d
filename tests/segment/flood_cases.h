// Flood fills against the plain form, in scratch memory of exactly the reported size.
#pragma once
#include "distance/distance_roles.h"
#include "reference/flood.h"

namespace test {

// A few values only, so that there are regions: noise, a chessboard, stripes with gaps, slopes, or runs.
template <class T>
struct Regions : ImageRole<T> {
  explicit Regions(int channels) : ImageRole<T>(InOut<T>(channels)) {}
  void prepare(Random& r, const Shape& shape) {
    this->wild = std::is_floating_point<T>::value;
    ImageRole<T>::prepare(r, shape);
    const int mode = r.in(0, 5), gap = r.in(3, 20);
    const T base = (T)(std::is_floating_point<T>::value ? (T)0.25f : (T)r.in(0, 3));
    for (int y = 0; y < shape.height && mode < 5; ++y)
      for (int x = 0; x < this->candidate->elements(); ++x) {
        const int px = x / this->channels;
        int v = r.in(0, mode == 0 ? 3 : 1);
        if (mode == 1) v = (px + y) % 2 + (r.one(gap) ? 1 : 0);
        if (mode == 2) v = px % 2 == 0 || r.one(gap) ? 1 : 0;
        if (mode == 3) v = px / 2 + y + (r.one(gap) ? 1 : 0);
        if (mode == 4) v = r.one(10) ? 1 : 0;
        if (mode > 0 || !r.one(8)) this->candidate->set(x, y, (T)(base + (T)v));
        this->expected->set(x, y, this->candidate->at(x, y));
      }
    this->candidate->keep();
  }
};

// A place in the image.
struct Seed : Value<OrvPoint> {
  Seed() : Value<OrvPoint>(std::vector<OrvPoint>()) {}
  void prepare(Random& r, const Shape& shape) { chosen = {r.in(0, shape.width - 1), r.in(0, shape.height - 1)}; }
};

// The new value, often one that the image has, or a delta, of each channel.
template <class T>
struct Triple : Weights<T> {
  bool delta;
  explicit Triple(bool isDelta) : Weights<T>(std::vector<std::vector<T>>()), delta(isDelta) {}
  void prepare(Random& r, const Shape&) {
    const T base = std::is_floating_point<T>::value && !delta ? (T)0.25f : (T)0;
    this->chosen.clear();
    for (int k = 0; k < 3; ++k) {
      const int most = delta ? 2 : r.one(2) ? 100 : 6;
      this->chosen.push_back(delta && r.one(6) ? highest<T>() : (T)(base + (T)r.in(0, most)));
    }
  }
};

// The record of a fill, which may stay unwritten.
struct Region : Result<uint8_t> {
  OrvConnectedComp plain = {};
  Region() : Result(sizeof(OrvConnectedComp)) {}
  std::tuple<OrvConnectedComp*> arguments(Side side) {
    if (side == Side::reference) memset(&plain, 0x5C, sizeof plain);
    return {side == Side::reference ? &plain : (OrvConnectedComp*)(void*)memory->data()};
  }
  void verify(int) const {
    OrvConnectedComp unwritten;
    memset(&unwritten, 0x5C, sizeof unwritten);
    const bool stays = memcmp(&plain, &unwritten, sizeof plain) == 0;
    CHECK(stays ? memory->blank() : memcmp(memory->data(), &plain, sizeof plain) == 0, "the record");
  }
};

// All forms as functions of pointers to a value and two deltas.
#define FLOOD_FORM(parameters, ...)                                                                         \
  template <class T>                                                                                        \
  auto uniform(OrvStatus (*f)(T*, int32_t, OrvSize, OrvPoint, parameters, OrvConnectedComp*, uint8_t*)) {   \
    return [f](T* data, int32_t step, OrvSize size, OrvPoint seed, const T* v, const T* low, const T* high, \
               OrvConnectedComp* region, uint8_t* buffer) {                                                 \
      return (void)low, (void)high, f(data, step, size, seed, __VA_ARGS__, region, buffer);                 \
    };                                                                                                      \
  }
#define COMMA ,
FLOOD_FORM(T, *v)
FLOOD_FORM(const T*, v)
FLOOD_FORM(T COMMA T COMMA T, *v, *low, *high)
FLOOD_FORM(const T* COMMA const T* COMMA const T*, v, low, high)

// Sweeps and walks a form; its name tells the rule, the neighbours and the channels.
template <class T, class... More>
void checkFlood(const char* name, OrvStatus (*form)(T*, int32_t, OrvSize, OrvPoint, More...)) {
  using reference::Rule;
  const Rule rule = strstr(name, "Grad") ? Rule::grad : strstr(name, "Range") ? Rule::range : Rule::equal;
  const bool corners = strstr(name, "8Con") != nullptr;
  const int channels = strstr(name, "C3") ? 3 : 1;
  const auto plain = [=](auto* data, int32_t step, OrvSize size, OrvPoint seed, const T* value, const T* low,
                         const T* high, OrvConnectedComp* region, uint8_t*) {
    reference::flood(data, step, size, seed, value, low, high, region, channels, rule, corners);
  };
  const auto run = uniform(form);
  // As reported, computed anew: the size functions are one for both variants.
  const Scratch buffer([=](OrvSize size, int32_t* bytes) {
    const int32_t w = size.width, h = size.height;
    *bytes = rule == Rule::grad ? (w + 2) * (h + 2) + 16 * w * h + 64 : 6 * w * h + 32;
    return orvStatusOk;
  });
  for (int round = 0; round < 2; ++round)
    sweep(name, run, plain, {}, Regions<T>(channels), Roi(), Seed(), Triple<T>(false), Triple<T>(true), Triple<T>(true),
          Region(), buffer);
  std::vector<int> nulls = {0, 6, 7};
  if (channels == 3) nulls.push_back(3);
  if (channels == 3 && rule != Rule::equal) nulls.insert(nulls.end(), {4, 5});
  walkArguments(name, run, pointersThenSizes(nulls, 1) + stepsOf<T>({0}), Regions<T>(channels), Roi(), Seed(),
                Triple<T>(false), Triple<T>(true), Triple<T>(true), Region(), buffer);
  T pixels[6] = {}, values[3] = {1, 1, 1}, delta[3] = {1, 1, (T)-1};
  uint8_t scratch[400];
  OrvConnectedComp region;
  const int32_t step = 2 * channels * (int32_t)sizeof(T);
  const auto status = [&](int32_t bytes, OrvPoint seed, const T* high) {
    return run(pixels, bytes, {2, 1}, seed, values, values, high, &region, scratch);
  };
  for (const OrvPoint seed : {OrvPoint{2, 0}, {-1, 0}, {0, 1}, {0, -1}})
    CHECK(status(step, seed, values) == orvStatusOutOfRange && status(step - 1, seed, values) == orvStatusStep, "%s",
          name);
  if (std::is_floating_point<T>::value && rule == Rule::grad && channels == 3)
    CHECK(status(step, {0, 0}, delta) == orvStatusOutOfRange && pixels[0] == 0);
}
#define FLOOD(name) checkFlood(#name, orviFloodFill_##name##IR)

}  // namespace test
