// A described function, swept over sizes, steps, addresses, contents, widths and threads against its reference.
//
// A function is described once, by the roles of its arguments in order:
//
//   sweep("orviFoo_8u_C1R", orviFoo_8u_C1R, reference::foo<uint8_t>, {512, 513},
//         In<uint8_t>(), Out<uint8_t>(), Roi(), Value<float>({0.f, 1.f, -2.5f}));
//
// The reference takes the same arguments. Whatever the function writes must be what the reference writes, bit for bit;
// nothing else may change. walkArguments() takes the same roles and the told order of the checks.
//
// A role is a record with: prepare (new memory and content for a shape), arguments (a tuple, of the candidate or of the
// reference), reset (before a call), verify (after it). A family with arguments of its own adds roles of its own.
#pragma once
#include <stdio.h>
#include <optional>
#include <tuple>
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/sizes.h"
#include "framework/walker.h"

namespace test {

enum class Side { candidate, reference };

// How an argument is spoiled for walkArguments().
enum class Fault { null, smallStep, misalignedStep, width, height };

// An image that is read, written or both. The reference works on an image of its own.
template <class T>
struct ImageRole {
  int channels;
  bool reads, writes, wild;
  std::optional<Image<T>> candidate, expected;
  bool nullFault = false, smallFault = false, alignFault = false;

  void prepare(Random& r, const Shape& shape) {
    candidate.emplace(r, shape.width, shape.height, channels);
    candidate->fill(r, wild);
    if (!writes) return;
    expected.emplace(r, shape.width, shape.height, channels);
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < expected->elements(); ++x) expected->set(x, y, candidate->at(x, y));
    expected->keep();
  }
  std::tuple<T*, int32_t> arguments(Side side) {
    Image<T>& image = side == Side::reference && writes ? *expected : *candidate;
    int32_t step = image.step();
    if (smallFault) step = (image.elements() - 1) * (int32_t)sizeof(T);
    if (alignFault) step += 1;
    return {nullFault ? nullptr : image.data(), step};
  }
  void spoil(Fault fault) {
    nullFault |= fault == Fault::null;
    smallFault |= fault == Fault::smallStep;
    alignFault |= fault == Fault::misalignedStep;
  }
  void mend() { nullFault = smallFault = alignFault = false; }
  void reset() { candidate->restore(); }
  bool untouched() const { return candidate->unchanged(); }
  void verify(int position) const {
    if (!writes) {
      if (!candidate->unchanged()) fail("argument %d: a source has changed", position);
      return;
    }
    for (int y = 0; y < candidate->height(); ++y)
      for (int x = 0; x < candidate->elements(); ++x) {
        const T got = candidate->at(x, y), want = expected->at(x, y);
        if (same(got, want)) continue;
        fail("argument %d: element %d of row %d is %.9g, not %.9g", position, x, y, (double)got, (double)want);
        return;
      }
    if (!candidate->onlyRegionChanged()) fail("argument %d: written outside the region", position);
  }
};

template <class T>
ImageRole<T> In(int channels = 1) {
  return {channels, true, false, false, {}, {}};
}
template <class T>
ImageRole<T> Out(int channels = 1) {
  return {channels, false, true, false, {}, {}};
}
template <class T>
ImageRole<T> InOut(int channels = 1) {
  return {channels, true, true, false, {}, {}};
}
// The same with infinities, NaNs, denormals and minus zero among the content.
template <class Role>
Role wild(Role role) {
  role.wild = true;
  return role;
}

// A byte mask: runs of zero and of any other values.
struct Mask : ImageRole<uint8_t> {
  Mask() : ImageRole<uint8_t>{1, true, false, false, {}, {}} {}
  void prepare(Random& r, const Shape& shape) {
    ImageRole<uint8_t>::prepare(r, shape);
    const int mode = r.in(0, 5);  // 0 all zero, 1 none zero, else mixed
    bool open = false;
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width; ++x) {
        if (r.one(5)) open = !open;
        const bool set = mode == 1 || (mode > 1 && open);
        candidate->set(x, y, (uint8_t)(set ? (r.one(2) ? 1 : r.in(1, 255)) : 0));
      }
    candidate->keep();
  }
};

struct Roi {
  OrvSize size{};
  bool widthFault = false, heightFault = false;
  void prepare(Random&, const Shape& shape) { size = {shape.width, shape.height}; }
  std::tuple<OrvSize> arguments(Side) {
    OrvSize s = size;
    if (widthFault) s.width = 0;
    if (heightFault) s.height = -3;
    return {s};
  }
  void spoil(Fault fault) {
    widthFault |= fault == Fault::width;
    heightFault |= fault == Fault::height;
  }
  void mend() { widthFault = heightFault = false; }
  void reset() {}
  bool untouched() const { return true; }
  void verify(int) const {}
};

// A number passed by value: one of the given ones, another for each shape.
template <class T>
struct Value {
  std::vector<T> choices;
  T chosen{};
  explicit Value(std::vector<T> list) : choices(std::move(list)) {}
  void prepare(Random& r, const Shape&) { chosen = choices[(size_t)r.in(0, (int)choices.size() - 1)]; }
  std::tuple<T> arguments(Side) { return {chosen}; }
  void spoil(Fault) {}
  void mend() {}
  void reset() {}
  bool untouched() const { return true; }
  void verify(int) const {}
};

// Results written through a pointer, as means and norms are. `tolerance` is relative, 0 for equal bits.
template <class T>
struct Result {
  int count;
  double tolerance;
  bool nullFault = false;
  std::shared_ptr<Guarded> memory;
  std::vector<T> expected;
  explicit Result(int elements = 1, double relative = 0) : count(elements), tolerance(relative) {}
  void prepare(Random&, const Shape&) {
    memory = std::make_shared<Guarded>(sizeof(T) * (size_t)count, true, 0);
    expected.assign((size_t)count, T());
    reset();
  }
  std::tuple<T*> arguments(Side side) {
    return {nullFault ? nullptr : side == Side::reference ? expected.data() : (T*)(void*)memory->data()};
  }
  void spoil(Fault fault) { nullFault |= fault == Fault::null; }
  void mend() { nullFault = false; }
  void reset() { memset(memory->data(), 0x5C, memory->bytes()); }
  bool untouched() const {
    for (size_t i = 0; i < memory->bytes(); ++i)
      if (memory->data()[i] != 0x5C) return false;
    return true;
  }
  void verify(int position) const {
    for (int i = 0; i < count; ++i) {
      T got;
      memcpy(&got, memory->data() + (size_t)i * sizeof(T), sizeof(T));
      const T want = expected[(size_t)i];
      if (same(got, want) || fabs((double)got - (double)want) <= tolerance * fabs((double)want)) continue;
      fail("argument %d: result %d is %.17g, not %.17g", position, i, (double)got, (double)want);
    }
  }
};

namespace detail {

template <class Function, class... Role>
auto invoke(Function function, Side side, Role&... roles) {
  return std::apply(function, std::tuple_cat(roles.arguments(side)...));
}

inline std::string describe(const char* name, const Shape& shape) {
  return std::string(name) + " " + std::to_string(shape.width) + "x" + std::to_string(shape.height);
}

}  // namespace detail

template <class Function, class Reference, class... Role>
void sweep(const char* name, Function function, Reference reference, Shape threaded, Role... roles) {
  Random r(seed());
  for (const Shape& shape : shapes(threaded)) {
    const Context context(detail::describe(name, shape));
    (roles.prepare(r, shape), ...);
    detail::invoke(reference, Side::reference, roles...);
    forEachSetting(shape.threaded, [&] {
      (roles.reset(), ...);
      const OrvStatus status = detail::invoke(function, Side::candidate, roles...);
      if (status != orvStatusOk) fail("status %d", (int)status);
      int position = 0;
      (roles.verify(position++), ...);
    });
  }
}

// One check in the told order: the fault of the argument at a position.
struct Told {
  Fault fault;
  int position;
};

// Nulls of all images, then width and height: what nearly every function checks first. `nulls` are the positions.
inline std::vector<Told> pointersThenSizes(std::vector<int> nulls, int roi) {
  std::vector<Told> order;
  for (const int position : nulls) order.push_back({Fault::null, position});
  order.push_back({Fault::width, roi});
  order.push_back({Fault::height, roi});
  return order;
}

// Walks the argument checks of a described function; `order` names the faults as the function tests them.
template <class Function, class... Role>
void walkArguments(const char* name, Function function, const std::vector<Told>& order, Role... roles) {
  Random r(seed());
  const Context context(name);
  const Shape shape{13, 5};
  (roles.prepare(r, shape), ...);
  (roles.reset(), ...);
  const auto spoil = [&](const Told& told) {
    int position = 0;
    ((position++ == told.position ? roles.spoil(told.fault) : void()), ...);
  };
  static const OrvStatus statuses[] = {orvStatusNullPtr, orvStatusStep, orvStatusStepAlign, orvStatusSize,
                                       orvStatusSize};
  static const char* const texts[] = {"null", "small step", "misaligned step", "width", "height"};
  std::vector<Check<std::vector<Told>>> checks;
  for (const Told& told : order)
    checks.push_back({std::string(texts[(int)told.fault]) + " of argument " + std::to_string(told.position),
                      statuses[(int)told.fault], [told](std::vector<Told>& faults) { faults.push_back(told); }});
  walkChecks<std::vector<Told>>(
      {}, checks,
      [&](std::vector<Told>& faults) {
        for (const Told& told : faults) spoil(told);
        const OrvStatus status = detail::invoke(function, Side::candidate, roles...);
        (roles.mend(), ...);
        return status;
      },
      [&] { return (roles.untouched() && ...); });
}

}  // namespace test
