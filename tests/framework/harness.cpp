// The main loop of a test program.
#include "framework/harness.h"
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace test {
namespace {

struct Entry {
  std::string suite, name;
  void (*run)();
};

std::vector<Entry>& entries() {
  static std::vector<Entry> list;
  return list;
}

std::vector<std::string> context;
int noted = 0;
int printedInTest = 0;
constexpr int mostPrinted = 12;  // the first failures tell; the rest would bury them

std::string stem(const char* file) {
  std::string s = file;
  s = s.substr(s.find_last_of('/') + 1);
  return s.substr(0, s.find_last_of('.'));
}

}  // namespace

Registration::Registration(const char* file, const char* name, void (*run)()) {
  entries().push_back({stem(file), name, run});
}

void fail(const char* format, ...) {
  ++noted;
  if (++printedInTest > mostPrinted) return;
  fprintf(stderr, "  FAIL ");
  for (const std::string& line : context) fprintf(stderr, "[%s] ", line.c_str());
  va_list arguments;
  va_start(arguments, format);
  vfprintf(stderr, format, arguments);
  va_end(arguments);
  fprintf(stderr, "\n");
}

int failures() { return noted; }

Context::Context(std::string text) { context.push_back(std::move(text)); }
Context::~Context() { context.pop_back(); }

bool quick() {
  static const bool set = getenv("ORV_TEST_QUICK") != nullptr;
  return set;
}

uint64_t seed() {
  const char* text = getenv("ORV_TEST_SEED");
  static const uint64_t value = text ? strtoull(text, nullptr, 0) : 20141009;
  return value;
}

bool isCaught(void (*body)()) {
  fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    if (!freopen("/dev/null", "w", stderr)) _exit(2);
    alarm(20);
    noted = 0;
    body();
    _exit(noted > 0 ? 1 : 0);
  }
  int state = 0;
  waitpid(child, &state, 0);
  return !(WIFEXITED(state) && WEXITSTATUS(state) == 0);
}

}  // namespace test

int main(int count, char** names) {
  using namespace test;
  int run = 0, bad = 0;
  for (const Entry& entry : entries()) {
    bool wanted = count < 2;
    for (int i = 1; i < count; ++i) wanted |= entry.suite == names[i];
    if (!wanted) continue;
    const int before = noted;
    printedInTest = 0;
    entry.run();
    ++run;
    if (noted == before) continue;
    ++bad;
    fprintf(stderr, "%s.%s failed, %d complaints; seed %llu\n", entry.suite.c_str(), entry.name.c_str(), noted - before,
            (unsigned long long)seed());
  }
  printf("%d passed, %d failed\n", run - bad, bad);
  return bad > 0 || run == 0;
}
