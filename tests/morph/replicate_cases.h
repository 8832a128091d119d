// Filters that repeat the nearest pixel and take a record: swept, and their checks walked.
#pragma once
#include "distance/step_checks.h"

namespace test {

// How a record is made. `draw` draws a mask for a region, grows the region to the largest that the record shall serve,
// and tells the bytes of the record.
template <class State>
struct RecordMaker {
  std::function<int32_t(Random&, OrvSize*)> draw;
  std::function<OrvStatus(State*)> init;
  std::function<OrvStatus(State**)> alloc;
  OrvStatus (*release)(State*);
};

// A record of a mask of its own for each shape, in memory of exactly the reported size or allocated.
template <class State>
struct Record : Plain {
  RecordMaker<State> maker;
  explicit Record(const RecordMaker<State>& made) : maker(made) {}
  std::shared_ptr<Guarded> memory{};
  std::shared_ptr<State> allocated{};
  OrvSize serves{};
  bool given = false;
  void prepare(Random& r, const Shape& shape) {
    serves = {shape.width, shape.height};
    memory = std::make_shared<Guarded>((size_t)maker.draw(r, &serves), !r.one(4), (size_t)r.in(0, 20));
    State* record = nullptr;
    CHECK(maker.init((State*)(void*)memory->data()) == orvStatusOk && maker.alloc(&record) == orvStatusOk);
    allocated = std::shared_ptr<State>(record, [this](State* p) { CHECK(p && maker.release(p) == orvStatusOk); });
    given = r.one(2);
  }
  std::tuple<State*> arguments(Side) { return {given ? (State*)(void*)memory->data() : allocated.get()}; }
  void verify(int) const { CHECK(memory->intact()); }
};

// `plain` takes the filter's arguments but for the border and the record; `extra` shapes end the sweeps. The record
// serves regions of its own width, and height if `rows`.
template <class T, class State, class Plain>
void checkReplicate(OrvStatus (*filter)(const T*, int32_t, T*, int32_t, OrvSize, OrvBorderType, State*), int channels,
                    const RecordMaker<State>& maker, bool rows, std::vector<Shape> extra, const Plain& plain) {
  const auto reference = [&](const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int, State*) {
    plain(src, srcStep, dst, dstStep, roi);
  };
  const Value<OrvBorderType> border({orvBorderRepl});
  for (const Shape& shape : extra)
    sweep("replicate", filter, reference, shape, In<T>(channels), Out<T>(channels), Roi(), border,
          Record<State>(maker));
  const std::vector<Told> order = pointersThenSizes({0, 1, 4}, 2) + stepsOf<T>({0, 1});
  walkArguments("replicate", filter, order, In<T>(channels), Out<T>(channels), Roi(), Value<OrvBorderType>({17}),
                Record<State>(maker));
  Random r(seed());
  Record<State> record(maker);
  record.prepare(r, {9, 5});
  const int32_t most = record.serves.width;
  T pixels[20 * 7 * 4] = {};
  const auto status = [&](int32_t width, int32_t height, OrvBorderType kind) {
    return filter(pixels, 80 * sizeof(T), pixels, 80 * sizeof(T), {width, height}, kind, record.allocated.get());
  };
  for (const int kind : {0, 2, 6, 17}) CHECK(status(most + 1, 5, kind) == orvStatusBadArg);
  CHECK(status(most + 1, 5, orvBorderRepl) == orvStatusSize && status(most, 5, orvBorderRepl) == orvStatusOk);
  if (rows) CHECK(status(most, record.serves.height + 1, orvBorderRepl) == orvStatusSize);
}

}  // namespace test
