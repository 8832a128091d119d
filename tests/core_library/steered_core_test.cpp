// The steered core library itself: what it is there to catch must end the process, what is right must not.
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cstdio>
#include <initializer_list>
#include "framework/steered_core.h"

extern "C" {
void* orvMalloc(int32_t bytes);
void orvFree(void* memory);
}

static int failures;

static void expect(bool holds, const char* what, int32_t bytes) {
  if (holds) return;
  failures++;
  fprintf(stderr, "%s, %d bytes\n", what, bytes);
}

// Does a process of its own that does this with a block end well?
template <class Action>
static bool survives(int32_t bytes, Action action) {
  const pid_t child = fork();
  if (child == 0) {
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    freopen("/dev/null", "w", stderr);  // the report of the fault that is asked for
    action(static_cast<volatile uint8_t*>(orvMalloc(bytes)));
    _exit(0);
  }
  int state = 0;
  return child > 0 && waitpid(child, &state, 0) == child && WIFEXITED(state) && WEXITSTATUS(state) == 0;
}

static void release(volatile uint8_t* block) { orvFree(const_cast<uint8_t*>(block)); }

static void blocksAreGuarded(int32_t bytes) {
  const auto fill = [=](volatile uint8_t* p) {
    for (int32_t i = 0; i < bytes; i++) p[i] = 1;
    release(p);
  };
  expect(survives(bytes, fill), "a filled block is a fault", bytes);
  expect(!survives(bytes, [=](volatile uint8_t* p) { p[bytes] = 1; }), "a write behind the block passes", bytes);
  expect(!survives(bytes, [=](volatile uint8_t* p) { (void)p[bytes]; }), "a read behind the block passes", bytes);
  expect(!survives(bytes, [](volatile uint8_t* p) { p[-1] = 1, release(p); }), "a write before it passes", bytes);
  expect(!survives(bytes, [](volatile uint8_t* p) { release(p), p[0] = 1; }), "use after release passes", bytes);
  expect(!survives(bytes, [](volatile uint8_t* p) { release(p), release(p); }), "a second release passes", bytes);
  if (bytes > 1) expect(!survives(bytes, [](volatile uint8_t* p) { release(p + 1); }), "release inside passes", bytes);
}

static void allocationsFailOnce() {
  for (int32_t k = 0; k <= 3; k++) {
    steerFailAllocation(k);
    void* blocks[3];
    for (void*& block : blocks) block = orvMalloc(100);
    for (int32_t i = 0; i < 3; i++) expect((blocks[i] == nullptr) == (i + 1 == k), "the wrong allocation fails", k);
    expect(steeredAllocations() == 3 && steeredLiveAllocations() == (k ? 2 : 3), "counts", k);
    for (void* block : blocks) orvFree(block);
    expect(steeredLiveAllocations() == 0, "blocks counted after their release", k);
  }
  steerFailAllocation(0);
}

int main() {
  for (int32_t bytes : {1, 63, 64, 4095, 4096, 4097, 100000}) blocksAreGuarded(bytes);
  allocationsFailOnce();
  printf("%d failures\n", failures);
  return failures != 0;
}
