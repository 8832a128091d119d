// Tests of the real core library, against what the compiler's run-time, the kernel and the processor tell.
//
//   core_library_test                  everything; starts itself again where a fresh process is needed
//   core_library_test features WORD    only: the features offered are exactly WORD (for emulated processors)
#include "orvcore.h"
#include <cpuid.h>
#include <dlfcn.h>
#include <omp.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>
#include "orvcv/version.h"

static int failures;

#define CHECK(condition, ...)                                         \
  do {                                                                \
    if (!(condition)) {                                               \
      failures++;                                                     \
      fprintf(stderr, "%s:%d: %s: ", __func__, __LINE__, #condition); \
      fprintf(stderr, __VA_ARGS__);                                   \
      fputc('\n', stderr);                                            \
    }                                                                 \
  } while (0)

// Flags of the first processor as the kernel tells them.
static std::set<std::string> kernelFlags() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("flags", 0) != 0) continue;
    std::istringstream words(line.substr(line.find(':') + 1));
    return {std::istream_iterator<std::string>(words), {}};
  }
  return {};
}

// Runs this program again with one argument, prepared by `prepare` in the new process. Returns its exit code.
template <class Prepare>
static int again(const char* argument, Prepare prepare) {
  const pid_t child = fork();
  if (child == 0) {
    prepare();
    execl("/proc/self/exe", "core_library_test", argument, static_cast<char*>(nullptr));
    _exit(255);
  }
  int state = 0;
  return child > 0 && waitpid(child, &state, 0) == child && WIFEXITED(state) ? WEXITSTATUS(state) : -1;
}

// ---- features ----

// The first calls of the process, by several threads at once: all see the same.
static void firstCallsAtOnce() {
  std::vector<std::array<uint64_t, 5>> answers(8);
  std::vector<std::thread> team;
  for (auto& a : answers)
    team.emplace_back([&a] {
      int32_t cache = 0;
      a[0] = orvGetEnabledCpuFeatures();
      orvGetCpuFeatures(&a[1], nullptr);
      orvGetMaxCacheSizeB(&cache);
      a[2] = (uint64_t)cache, a[3] = (uint64_t)orvGetNumCoresOnDie(), a[4] = (uint64_t)ownGetNumThreads();
    });
  for (std::thread& t : team) t.join();
  for (const auto& a : answers) CHECK(a == answers[0] && a[0] == a[1], "features %" PRIx64, a[1]);
}

static void featuresAsTheKernelTells() {
  // clang-format off
  static const std::map<std::string, uint64_t> names = {
      {"sse2", orvCpuSse2}, {"pni", orvCpuSse3}, {"popcnt", orvCpuPopcnt}, {"abm", orvCpuLzcnt},
      {"ssse3", orvCpuSsse3}, {"movbe", orvCpuMovbe}, {"sse4_1", orvCpuSse41}, {"sse4_2", orvCpuSse42},
      {"aes", orvCpuAes}, {"pclmulqdq", orvCpuPclmul}, {"sha_ni", orvCpuSha}, {"bmi1", orvCpuBmi1},
      {"bmi2", orvCpuBmi2}, {"avx", orvCpuAvx}, {"f16c", orvCpuF16c}, {"fma", orvCpuFma}, {"avx2", orvCpuAvx2},
      {"vaes", orvCpuVaes}, {"vpclmulqdq", orvCpuVpclmul}, {"avx512f", orvCpuAvx512f}, {"avx512cd", orvCpuAvx512cd},
      {"avx512dq", orvCpuAvx512dq}, {"avx512bw", orvCpuAvx512bw}, {"avx512vl", orvCpuAvx512vl},
      {"avx512vbmi", orvCpuAvx512vbmi}, {"avx512_vnni", orvCpuAvx512vnni}};
  // clang-format on
  uint64_t offered = 0, named = 0;
  orvGetCpuFeatures(&offered, nullptr);
  const std::set<std::string> flags = kernelFlags();
  for (const auto& [name, bit] : names) {
    CHECK((named & bit) == 0, "two features share %" PRIx64, bit);
    named |= bit;
    CHECK(flags.empty() || ((offered & bit) != 0) == (flags.count(name) != 0), "%s", name.c_str());
  }
  CHECK((offered & ~named) == 0, "a bit without a name in %" PRIx64, offered);
}

static void registersOfLeafOne() {
  uint32_t seen[4] = {}, a = 0, b = 0, c = 0, d = 0;
  CHECK(orvGetCpuFeatures(nullptr, seen) == orvStatusOk, "registers alone");
  CHECK(orvGetCpuFeatures(nullptr, nullptr) == orvStatusOk, "both null");
  __get_cpuid(1, &a, &b, &c, &d);
  const uint32_t withoutCore = 0x00FFFFFF;  // the high byte of ebx numbers the core that happens to run
  CHECK(seen[0] == a && (seen[1] & withoutCore) == (b & withoutCore) && seen[2] == c && seen[3] == d,
        "%x %x %x %x, not %x %x %x %x", seen[0], seen[1], seen[2], seen[3], a, b, c, d);
}

static void enabledFeatures() {
  uint64_t offered = 0, after = 0;
  orvGetCpuFeatures(&offered, nullptr);
  const uint64_t words[] = {0, orvCpuSsse3, orvCpuSsse3 | orvCpuMovbe, ~uint64_t{orvCpuMovbe}, ~offered, ~uint64_t{0}};
  for (uint64_t word : words) {
    CHECK(orvSetEnabledCpuFeatures(word) == orvStatusOk, "word %" PRIx64, word);
    CHECK(orvGetEnabledCpuFeatures() == (offered & word), "word %" PRIx64, word);
    orvGetCpuFeatures(&after, nullptr);
    CHECK(after == offered, "what the processor offers changed with word %" PRIx64, word);
  }
}

// The variant that the vision library takes when it is opened with these features enabled: its tag as exit code.
static int variantWith(uint64_t word) {
  orvSetEnabledCpuFeatures(word);
  void* library = dlopen(VISION_LIBRARY, RTLD_NOW);
  if (!library) return fprintf(stderr, "%s\n", dlerror()), 1;
  const auto version = reinterpret_cast<const OrvLibVersion* (*)()>(dlsym(library, "orvcvGetLibVersion"));
  return version ? version()->cpuTag[0] : 1;
}

static void enabledFeaturesSteerTheVisionLibrary() {
  const uint64_t both = orvCpuSsse3 | orvCpuMovbe, offered = orvGetEnabledCpuFeatures();
  CHECK(again("variant-all", [] {}) == ((offered & both) == both ? 'n' : 'u'), "all features");
  CHECK(again("variant-without-movbe", [] {}) == 'u', "all but MOVBE");
}

// ---- threads ----

static void threadCount() {
  const int32_t byDefault = ownGetNumThreads();
  CHECK(byDefault == std::min<int32_t>(orvGetNumCoresOnDie(), orvMaxThreads), "default %d", byDefault);
  for (int32_t good : {1, 3, int32_t{orvMaxThreads}}) {
    CHECK(orvSetNumThreads(good) == orvStatusOk, "%d", good);
    CHECK(orvGetNumThreads() == good && ownGetNumThreads() == good, "%d", good);
    for (int32_t bad : {0, -1, INT32_MIN, orvMaxThreads + 1, INT32_MAX}) {
      CHECK(orvSetNumThreads(bad) == orvStatusBadArg, "%d", bad);
      CHECK(ownGetNumThreads() == good, "after %d", bad);
    }
  }
  orvSetNumThreads(byDefault);
}

static void processorsFollowTheAffinityMask() {
  cpu_set_t mask;
  const int32_t allowed = sched_getaffinity(0, sizeof mask, &mask) ? 1 : CPU_COUNT(&mask);
  CHECK(orvGetNumCoresOnDie() == allowed, "%d processors, %d allowed", orvGetNumCoresOnDie(), allowed);
  CHECK(again("processors", [] {}) == (allowed & 0xFF), "in a fresh process");

  const auto toOne = [&mask] {
    int first = 0;
    while (!CPU_ISSET(first, &mask)) first++;
    CPU_ZERO(&mask);
    CPU_SET(first, &mask);
    sched_setaffinity(0, sizeof mask, &mask);
  };
  CHECK(again("processors", toOne) == 1, "bound to one processor");

  // This program is linked with the OpenMP runtime, which pins the first thread before main then.
  const auto bindThreads = [] { setenv("OMP_PROC_BIND", "true", 1); };
  CHECK(again("processors", bindThreads) == (allowed & 0xFF), "with threads bound by the runtime");
}

// ---- memory ----

static void largestCache() {
  CHECK(orvGetMaxCacheSizeB(nullptr) == orvStatusNullPtr, "null");
  int32_t size = 0;
  CHECK(orvGetMaxCacheSizeB(&size) == orvStatusOk, "status");
  int64_t largest = 0;
  for (int level = 0;; level++) {
    const std::string directory = "/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(level);
    std::ifstream type(directory + "/type"), file(directory + "/size");
    std::string kind;
    int64_t kilobytes = 0;
    if (!(type >> kind) || !(file >> kilobytes)) break;
    if (kind != "Instruction") largest = std::max(largest, kilobytes << 10);
  }
  if (largest == 0) largest = size;  // this kernel doesn't tell
  CHECK(size == largest && size >= 4096, "%d bytes, the kernel tells %" PRId64, size, largest);
}

static void allocation() {
  for (int32_t none : {0, -1, INT32_MIN}) CHECK(orvMalloc(none) == nullptr, "%d bytes", none);
  orvFree(nullptr);
  std::map<int32_t, uint8_t*> blocks;
  for (int32_t bytes : {1, 2, 63, 64, 65, 127, 4095, 4097, 1 << 20, 3 << 24}) {
    auto* block = blocks[bytes] = static_cast<uint8_t*>(orvMalloc(bytes));
    CHECK(block && reinterpret_cast<uintptr_t>(block) % 64 == 0, "%d bytes at %p", bytes, static_cast<void*>(block));
    if (block) memset(block, bytes % 251, static_cast<size_t>(bytes));
  }
  for (const auto& [bytes, block] : blocks) {
    if (!block) continue;
    CHECK(block[0] == bytes % 251 && block[bytes - 1] == bytes % 251, "%d bytes overlap another block", bytes);
    orvFree(block);
  }
}

// ---- statuses ----

static void statusTexts() {
  // All values of the public header, read from its text so that a new value can't be forgotten.
  std::map<int32_t, std::string> statuses;
  std::ifstream file(TYPES_HEADER);
  for (std::string line; std::getline(file, line);) {
    char name[64];
    int value;
    if (sscanf(line.c_str(), " orvStatus%63[A-Za-z] = %d", name, &value) == 2) statuses[value] = name;
  }
  const std::string unknown = orvGetStatusString(1);
  CHECK(statuses.size() >= 29 && statuses.count(orvStatusNotSupported), "%zu values found", statuses.size());
  CHECK(!unknown.empty(), "text of an unknown value");
  std::set<std::string> texts = {unknown};
  for (const auto& [value, name] : statuses) {
    const std::string text = orvGetStatusString(value);
    CHECK(texts.insert(text).second, "%s has no text of its own: %s", name.c_str(), text.c_str());
    const bool plain = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
    CHECK(!text.empty() && plain && text.back() != '.', "%s: '%s'", name.c_str(), text.c_str());
    CHECK((text.rfind("warning", 0) == 0) == (value > 0), "%s: '%s'", name.c_str(), text.c_str());
  }
  for (int32_t value : {-1, -3, 5, 9999, INT32_MIN, INT32_MAX})
    CHECK(orvGetStatusString(value) == unknown, "%d", value);
}

int main(int count, char** arguments) {
  const std::string mode = count > 1 ? arguments[1] : "";
  if (mode == "processors") {
    omp_get_num_procs();  // keeps the OpenMP runtime among the libraries of this program
    return orvGetNumCoresOnDie() & 0xFF;
  }
  if (mode == "variant-all") return variantWith(~uint64_t{0});
  if (mode == "variant-without-movbe") return variantWith(~uint64_t{orvCpuMovbe});
  if (mode == "features" && count == 3) {
    const uint64_t expected = strtoull(arguments[2], nullptr, 0), offered = orvGetEnabledCpuFeatures();
    CHECK(offered == expected, "%" PRIx64 ", expected %" PRIx64, offered, expected);
    return failures != 0;
  }
  firstCallsAtOnce();
  featuresAsTheKernelTells();
  registersOfLeafOne();
  enabledFeatures();
  enabledFeaturesSteerTheVisionLibrary();
  threadCount();
  processorsFollowTheAffinityMask();
  largestCache();
  allocation();
  statusTexts();
  printf("%d failures\n", failures);
  return failures != 0;
}
