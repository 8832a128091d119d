// 256 first-in-first-out queues of pixels, one for each gray level or difference, in the caller's memory.
//
// Theory of operation. A queue is a chain of chunks, each a line of 32-bit words whose last one names the next chunk;
// so pushes and pops run along memory, and a pixel that is due soon can be seen ahead. A chunk is free again when its
// last pixel has been popped. All chunks in use hold at least a pixel.
//
// Memory. A chunk has 64 words where the pixels make up for the two that each queue may hold nearly empty, else 2
// words: 8 bytes a pixel are enough for all the pixels of an image, queued once each.
#pragma once
#include "segment/names.h"
#include "core/image.h"

namespace ORV_VARIANT {

class LevelQueues {
 public:
  // Memory of 8 bytes for each of `pixels`, at any address.
  LevelQueues(uint8_t* memory, int64_t pixels)
      : words_(loose((uint32_t*)(void*)memory)), last_(pixels >= 65536 ? 63 : 1) {
    for (Queue& q : queues_) q.head = q.tail = nowhere;
  }

  __attribute__((always_inline)) bool empty(int32_t level) const { return queues_[level].head == nowhere; }
  __attribute__((always_inline)) void push(int32_t level, uint32_t pixel) {
    Queue& q = queues_[level];
    if ((q.tail & last_) == last_) {  // a full chunk, or nowhere
      const uint32_t chunk = allocate();
      if (q.tail == nowhere) q.head = chunk;
      else words_[q.tail] = chunk;
      q.tail = chunk;
    }
    words_[q.tail++] = pixel;
  }
  // The level must not be empty.
  __attribute__((always_inline)) uint32_t pop(int32_t level) {
    Queue& q = queues_[level];
    const uint32_t pixel = words_[q.head++];
    if (q.head == q.tail) {
      release((q.head - 1) & ~last_);
      q.head = q.tail = nowhere;
    } else if ((q.head & last_) == last_) {
      const uint32_t next = words_[q.head];
      release(q.head & ~last_);
      q.head = next;
    }
    return pixel;
  }
  // A pixel that is popped soon after the next one, or anything: good for a prefetch only.
  __attribute__((always_inline)) uint32_t ahead(int32_t level) const {
    const uint32_t head = queues_[level].head, end = (head | last_) - 1;
    return head == nowhere ? 0 : (uint32_t)words_[head + 6 < end ? head + 6 : end];
  }

 private:
  static constexpr uint32_t nowhere = ~(uint32_t)0;
  struct Queue {
    uint32_t head, tail;  // words
  };

  uint32_t allocate() {
    if (free_ == nowhere) {
      const uint32_t chunk = fresh_;
      fresh_ += last_ + 1;
      return chunk;
    }
    const uint32_t chunk = free_;
    free_ = words_[chunk];
    return chunk;
  }
  __attribute__((always_inline)) void release(uint32_t chunk) {
    words_[chunk] = free_;
    free_ = chunk;
  }

  Loose<uint32_t>* words_;
  uint32_t last_;  // word of a chunk that names the next one
  uint32_t fresh_ = 0, free_ = nowhere;
  Queue queues_[256];
};

// Fetches a pixel that will be looked at soon, with the rows above and below it. Any address will do.
__attribute__((always_inline)) static inline void prefetchRows(const void* pixel, ptrdiff_t step) {
  for (ptrdiff_t y = -1; y <= 1; ++y) __builtin_prefetch((const void*)((uintptr_t)pixel + (uintptr_t)(y * step)));
}

// Rows of a number of pixels, without a division.
class RowOf {
 public:
  explicit RowOf(uint32_t width) : inverse_(~(uint64_t)0 / width + 1) {}
  __attribute__((always_inline)) uint32_t operator()(uint32_t pixel) const {
    return (uint32_t)(((unsigned __int128)inverse_ * pixel) >> 64);
  }

 private:
  uint64_t inverse_;
};

}  // namespace ORV_VARIANT
