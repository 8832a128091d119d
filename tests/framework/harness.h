// Registration of tests, failures, and the program's main loop.
//
//   TEST(name) { CHECK(condition, "format", ...); }
//
// A test belongs to the suite named after its file. `program [suite...]` runs all or the named suites. The environment
// variable ORV_TEST_SEED sets the seed, ORV_TEST_QUICK=1 thins out the sweeps (for emulated processors).
#pragma once
#include <stdint.h>
#include <string>

namespace test {

struct Registration {
  Registration(const char* file, const char* name, void (*run)());
};

// Notes a failure with its context; the first few of a test are printed.
__attribute__((format(printf, 1, 2))) void fail(const char* format, ...);
int failures();

// Adds a line of context to failures while it lives: function, sizes, setting.
class Context {
 public:
  explicit Context(std::string text);
  ~Context();
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
};

bool quick();
uint64_t seed();

// Runs `body` in a child process and tells whether it noted a failure, crashed or did not end: for the self-test.
bool isCaught(void (*body)());

#define TEST(name)                                                               \
  static void test_##name();                                                     \
  static const test::Registration register_##name(__FILE__, #name, test_##name); \
  static void test_##name()

#define CHECK(condition, ...)                                                                                \
  do {                                                                                                       \
    if (!(condition)) test::fail("" __VA_ARGS__), test::fail("  %s:%d: %s", __FILE__, __LINE__, #condition); \
  } while (0)

}  // namespace test
