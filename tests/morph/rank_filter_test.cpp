// Rank filters against their plain form; statuses, sizes, and what a float window of infinities gives.
#include "morph/rank_cases.h"

using namespace test;

namespace {

#define RANK(type, channels)                                                                                       \
  {"FilterMin_" #type, orviFilterMinBorderReplicate_##type, orviFilterMinGetBufferSize_##type, channels, false}, { \
    "FilterMax_" #type, orviFilterMaxBorderReplicate_##type, orviFilterMaxGetBufferSize_##type, channels, true     \
  }

const RankCase<uint8_t> bytes[] = {RANK(8u_C1R, 1), RANK(8u_C3R, 3), RANK(8u_C4R, 4)};
const RankCase<float> floats[] = {RANK(32f_C1R, 1), RANK(32f_C3R, 3), RANK(32f_C4R, 4)};

}  // namespace

TEST(bytes) {
  for (const auto& rank : bytes) sweepRank(rank), walkRank(rank);
}
TEST(floats) {
  for (const auto& rank : floats) sweepRank(rank), walkRank(rank);
}

TEST(infinities) {
  for (const float value : {INFINITY, -INFINITY})
    for (const auto& rank : {floats[0], floats[1]}) {
      const std::vector<float> src(20, value);
      std::vector<float> dst(20);
      std::vector<uint8_t> buffer(4096);
      CHECK(rank.run({src.data(), 20, dst.data(), 20, {5, 4}, {3, 3}, {1, 1}, buffer.data()}) == orvStatusOk);
      CHECK(dst == src);
    }
}

// 2 * h * (P + 32) + 32 * h + 32 with h = 5, P = 100, 300, 400 and 1600.
TEST(sizes) {
  const auto size = [](const auto& rank, OrvSize mask) {
    int32_t bytes = 0;
    rank.size(100, mask, &bytes);
    return bytes;
  };
  CHECK(size(bytes[0], {7, 5}) == 1512 && size(bytes[3], {1, 5}) == 3512 && size(floats[0], {90, 5}) == 4512);
  CHECK(size(floats[5], {2, 5}) == 16512 && size(bytes[5], {2, 5}) == 4512);
}
