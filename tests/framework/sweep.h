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
// reference), reset (before a call), verify (after it), untouched. A family with arguments of its own adds roles.
#pragma once
#include <stdio.h>
#include <functional>
#include <optional>
#include <tuple>
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/sizes.h"
#include "framework/walker.h"

namespace test {

enum class Side { candidate, reference };

// An image that is read, written or both. The reference works on an image of its own.
template <class T>
struct ImageRole {
  int channels;
  bool reads, writes, wild = false;
  // How far readable pixels reach around the region; it may draw the numbers that decide this, for roles behind.
  std::function<Margin(Random&, const Shape&)> margin;
  std::optional<Image<T>> candidate, expected;

  void prepare(Random& r, const Shape& shape) {
    candidate.emplace(r, shape.width, shape.height, channels, margin ? margin(r, shape) : Margin());
    candidate->fill(r, wild);
    if (!writes) return;
    expected.emplace(r, shape.width, shape.height, channels);
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < expected->elements(); ++x) expected->set(x, y, candidate->at(x, y));
    expected->keep();
  }
  std::tuple<T*, int32_t> arguments(Side side) {
    Image<T>& image = side == Side::reference && writes ? *expected : *candidate;
    return {image.data(), image.step()};
  }
  void reset() { candidate->restore(); }
  bool untouched() const { return candidate->unchanged(); }
  void verify(int position) const {
    const Context context("argument " + std::to_string(position));
    if (writes) expectImage(*candidate, [&](int x, int y) { return expected->at(x, y); });
    else if (!candidate->unchanged()) fail("a source has changed");
  }
  // A step that is too small, as misaligned as the given one.
  int32_t shortStep(int32_t step) const {
    return (candidate->elements() - 1) * (int32_t)sizeof(T) + step % (int32_t)sizeof(T);
  }
};

template <class T>
ImageRole<T> In(int channels = 1) {
  return {channels, true, false, false, {}, {}, {}};
}
template <class T>
ImageRole<T> Out(int channels = 1) {
  return {channels, false, true, false, {}, {}, {}};
}
template <class T>
ImageRole<T> InOut(int channels = 1) {
  return {channels, true, true, false, {}, {}, {}};
}
// The same with infinities, NaNs, denormals and minus zero among the content.
template <class Role>
Role wild(Role role) {
  role.wild = true;
  return role;
}
// The same with readable pixels beyond its sides.
template <class Role, class MarginOf>
Role around(Role role, MarginOf margin) {
  role.margin = margin;
  return role;
}

// A byte mask: runs of zero and of any other values.
struct Mask : ImageRole<uint8_t> {
  Mask() : ImageRole<uint8_t>(In<uint8_t>()) {}
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

// What roles without memory of their own have in common.
struct Plain {
  void reset() {}
  bool untouched() const { return true; }
  void verify(int) const {}
};

struct Roi : Plain {
  OrvSize size{};
  void prepare(Random&, const Shape& shape) { size = {shape.width, shape.height}; }
  std::tuple<OrvSize> arguments(Side) { return {size}; }
};

// A number or pointer passed by value: one of the given ones, another for each shape, or what a function draws.
template <class T>
struct Value : Plain {
  std::function<T(Random&)> draw;
  T chosen{};
  explicit Value(std::vector<T> list)
      : draw([list](Random& r) { return list[(size_t)r.in(0, (int)list.size() - 1)]; }) {}
  void prepare(Random& r, const Shape&) { chosen = draw(r); }
  std::tuple<T> arguments(Side) { return {chosen}; }
};
template <class T>
Value<T> DrawnBy(std::function<T(Random&)> draw) {
  Value<T> value(std::vector<T>{});
  value.draw = std::move(draw);
  return value;
}
// A variable that a role before this one sets.
template <class T>
Value<T> The(const T& variable) {
  return DrawnBy<T>([&variable](Random&) { return variable; });
}

// Working memory of exactly the reported size, which may depend on the threads, at any address.
struct Scratch {
  std::function<OrvStatus(OrvSize, int32_t*)> size;
  OrvSize roi{};
  size_t gap = 0;
  bool atEnd = true;
  std::shared_ptr<Guarded> memory;
  explicit Scratch(std::function<OrvStatus(OrvSize, int32_t*)> report) : size(std::move(report)) {}
  void prepare(Random& r, const Shape& shape) {
    roi = {shape.width, shape.height};
    atEnd = !r.one(4), gap = (size_t)r.in(0, 70);
  }
  std::tuple<uint8_t*> arguments(Side) { return {memory ? memory->data() : nullptr}; }
  void reset() {
    int32_t bytes = -1;
    if (size(roi, &bytes) != orvStatusOk || bytes < 0) return fail("no size");
    memory = std::make_shared<Guarded>((size_t)bytes, atEnd, gap);
  }
  bool untouched() const { return memory->blank(); }
  void verify(int) const { CHECK(memory->intact(), "written outside the buffer"); }
};

// Results written through a pointer, as means and norms are. `tolerance` is relative, 0 for equal bits.
template <class T>
struct Result {
  int count;
  double tolerance;
  std::shared_ptr<Guarded> memory;
  std::vector<T> expected;
  explicit Result(int elements = 1, double relative = 0) : count(elements), tolerance(relative) {}
  void prepare(Random&, const Shape&) { expected.assign((size_t)count, T()); }
  std::tuple<T*> arguments(Side side) {
    return {side == Side::reference ? expected.data() : (T*)(void*)memory->data()};
  }
  void reset() { memory = std::make_shared<Guarded>(sizeof(T) * (size_t)count, true, 0); }
  bool untouched() const { return memory->blank(); }
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

// The numbers among the arguments.
template <class... Argument>
std::string numbers(const std::tuple<Argument...>& arguments) {
  std::string text;
  const auto add = [&](const auto& v) {
    if constexpr (std::is_arithmetic<std::decay_t<decltype(v)>>::value) text += " " + std::to_string(v);
  };
  std::apply([&](const auto&... v) { (add(v), ...); }, arguments);
  return text;
}

}  // namespace detail

template <class Function, class Reference, class... Role>
void sweepShapes(const char* name, Function function, Reference reference, const std::vector<Shape>& list, Random& r,
                 Role... roles) {
  for (const Shape& shape : list) {
    (roles.prepare(r, shape), ...);
    const Context context(detail::describe(name, shape) +
                          detail::numbers(std::tuple_cat(roles.arguments(Side::reference)...)));
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
template <class Function, class Reference, class... Role>
void sweep(const char* name, Function function, Reference reference, Shape threaded, Role... roles) {
  Random r(seed());
  sweepShapes(name, function, reference, shapes(threaded), r, roles...);
}

// How an argument is spoiled for walkArguments().
enum class Fault { null, smallStep, misalignedStep, width, height, value };

// One check in the told order: the fault of the argument at a position.
struct Told {
  Fault fault;
  int position;
  OrvStatus status = orvStatusOk;  // of Fault::value; the others have their own
  double value = 0;
};
inline Told badValue(int position, double value, OrvStatus status = orvStatusBadArg) {
  return {Fault::value, position, status, value};
}

// The same fault at several positions, for a list of checks.
inline std::vector<Told> eachOf(Fault fault, const std::vector<int>& positions) {
  std::vector<Told> order;
  for (const int position : positions) order.push_back({fault, position});
  return order;
}
inline std::vector<Told> operator+(std::vector<Told> first, const std::vector<Told>& then) {
  first.insert(first.end(), then.begin(), then.end());
  return first;
}

// Nulls of all images, then width and height: what nearly every function checks first. `nulls` are the positions.
inline std::vector<Told> pointersThenSizes(const std::vector<int>& nulls, int roi) {
  return eachOf(Fault::null, nulls) + std::vector<Told>{{Fault::width, roi}, {Fault::height, roi}};
}

namespace detail {

template <class Role>
auto shortStepOf(const Role& role, int32_t step) -> decltype(role.shortStep(step)) {
  return role.shortStep(step);
}
template <class Role, class Number>
Number shortStepOf(const Role&, Number step) {
  return step;
}

// Spoils one argument if the fault is its kind's.
template <class Role, class T>
bool spoil(const Role& role, T& argument, const Told& told) {
  if constexpr (std::is_pointer<T>::value) {
    if (told.fault == Fault::null) return argument = nullptr, true;
  } else if constexpr (std::is_same<T, OrvSize>::value) {
    if (told.fault == Fault::width) return argument.width = 0, true;
    if (told.fault == Fault::height) return argument.height = -3, true;
  } else if constexpr (std::is_arithmetic<T>::value) {
    if (told.fault == Fault::value) return argument = (T)told.value, true;
    if (told.fault == Fault::misalignedStep) return argument = (T)((int32_t)argument | 1), true;
    if (told.fault == Fault::smallStep) return argument = shortStepOf(role, argument), true;
  }
  return false;
}

// What a role passes, with the faults at its position: each spoils the first argument of its kind.
template <class Role>
auto spoilt(Role& role, int position, const std::vector<Told>& faults) {
  auto arguments = role.arguments(Side::candidate);
  for (const Told& told : faults)
    if (told.position == position)
      std::apply([&](auto&... argument) { return (spoil(role, argument, told) || ...); }, arguments);
  return arguments;
}

}  // namespace detail

// Walks the argument checks of a described function; `order` names the faults as the function tests them.
template <class Function, class... Role>
void walkArguments(const char* name, Function function, const std::vector<Told>& order, Role... roles) {
  Random r(seed());
  const Context context(name);
  (roles.prepare(r, {13, 5}), ...);
  (roles.reset(), ...);
  static const OrvStatus statuses[] = {orvStatusNullPtr, orvStatusStep, orvStatusStepAlign, orvStatusSize,
                                       orvStatusSize};
  static const char* const texts[] = {"null", "small step", "misaligned step", "width", "height", "value"};
  std::vector<Check<std::vector<Told>>> checks;
  for (const Told& told : order)
    checks.push_back({std::string(texts[(int)told.fault]) + " of argument " + std::to_string(told.position),
                      told.fault == Fault::value ? told.status : statuses[(int)told.fault],
                      [told](std::vector<Told>& faults) { faults.push_back(told); }});
  walkChecks<std::vector<Told>>(
      {}, checks,
      [&](std::vector<Told>& faults) {
        int position = 0;
        const auto next = [&] { return position++; };
        const std::tuple passed{detail::spoilt(roles, next(), faults)...};  // braces: from the first to the last
        return std::apply([&](const auto&... tuples) { return std::apply(function, std::tuple_cat(tuples...)); },
                          passed);
      },
      [&] { return (roles.untouched() && ...); });
}

}  // namespace test
