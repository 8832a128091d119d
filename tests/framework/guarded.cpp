// Guarded memory, from a pool: mapping and protecting pages for each image would dominate the tests' time.
#include "framework/guarded.h"
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <algorithm>
#include <map>
#include <vector>

namespace test {
namespace {

constexpr size_t page = 4096;
constexpr uint8_t pattern = 0xA5;

std::map<size_t, std::vector<uint8_t*>>& pool() {
  static std::map<size_t, std::vector<uint8_t*>> free;
  return free;
}

// `bytes` (whole pages) of memory between two protected pages.
uint8_t* takePages(size_t bytes) {
  std::vector<uint8_t*>& list = pool()[bytes];
  if (!list.empty()) {
    uint8_t* p = list.back();
    list.pop_back();
    return p;
  }
  void* p = mmap(nullptr, bytes + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (p == MAP_FAILED || mprotect((uint8_t*)p + page, bytes, PROT_READ | PROT_WRITE) != 0) {
    perror("guarded memory");
    abort();
  }
  return (uint8_t*)p + page;
}

bool holdsPattern(const uint8_t* first, const uint8_t* end) {
  return std::all_of(first, end, [](uint8_t byte) { return byte == pattern; });
}

}  // namespace

Guarded::Guarded(size_t bytes, bool atEnd, size_t gap) : bytes_(bytes) {
  wholeBytes_ = (bytes + gap + page - 1) / page * page;
  if (wholeBytes_ == 0) wholeBytes_ = page;
  whole_ = takePages(wholeBytes_);
  memset(whole_, pattern, wholeBytes_);
  data_ = atEnd ? whole_ + wholeBytes_ - bytes - gap : whole_ + gap;
}

Guarded::~Guarded() {
  if (wholeBytes_ <= 64 * page) pool()[wholeBytes_].push_back(whole_);
  else munmap(whole_ - page, wholeBytes_ + 2 * page);
}

bool Guarded::intact() const {
  return holdsPattern(whole_, data_) && holdsPattern(data_ + bytes_, whole_ + wholeBytes_);
}
bool Guarded::blank() const { return holdsPattern(data_, data_ + bytes_); }

}  // namespace test
