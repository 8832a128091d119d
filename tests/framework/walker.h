// The order of argument checks, proved pair by pair.
//
// A family lists its checks in the told order, each with a change that makes it fail. The walker applies each alone and
// each two together: a call with two faults must report the one that is told first. After every refused call nothing
// may have changed.
#pragma once
#include <functional>
#include <string>
#include <vector>
#include "framework/harness.h"
#include "framework/subject.h"

namespace test {

template <class Arguments>
struct Check {
  std::string name;
  OrvStatus status;
  std::function<void(Arguments&)> spoil;
};

// `call` runs the function on a copy of `valid`; `untouched` tells whether all memory is as it was.
template <class Arguments>
void walkChecks(const Arguments& valid, const std::vector<Check<Arguments>>& checks,
                const std::function<OrvStatus(Arguments&)>& call, const std::function<bool()>& untouched) {
  const auto expect = [&](Arguments arguments, const std::string& name, OrvStatus status) {
    const OrvStatus got = call(arguments);
    if (got != status) fail("%s: status %d, not %d", name.c_str(), (int)got, (int)status);
    if (!untouched()) fail("%s: refused, and yet something was written", name.c_str());
  };
  for (size_t i = 0; i < checks.size(); ++i) {
    Arguments one = valid;
    checks[i].spoil(one);
    expect(one, checks[i].name, checks[i].status);
    for (size_t k = i + 1; k < checks.size(); ++k) {
      Arguments two = valid;
      checks[k].spoil(two);
      checks[i].spoil(two);
      expect(two, checks[i].name + " before " + checks[k].name, checks[i].status);
    }
  }
}

}  // namespace test
