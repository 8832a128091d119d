// Memory that ends, or starts, at a protected page, with everything around the used bytes held to a pattern.
#pragma once
#include <stddef.h>
#include <stdint.h>

namespace test {

class Guarded {
 public:
  // `bytes` used bytes; `gap` bytes lie between them and the protected page (for odd addresses). `atEnd` tells which
  // side the page is on. All bytes start as the pattern.
  Guarded(size_t bytes, bool atEnd, size_t gap);
  ~Guarded();
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  uint8_t* data() const { return data_; }
  size_t bytes() const { return bytes_; }
  // All readable memory, the surroundings included.
  uint8_t* whole() const { return whole_; }
  size_t wholeBytes() const { return wholeBytes_; }
  // Whether the surroundings still hold the pattern; whether the used bytes do.
  bool intact() const;
  bool blank() const;

 private:
  uint8_t *data_, *whole_;
  size_t bytes_, wholeBytes_;
};

}  // namespace test
