// Rank filters against their plain form; statuses, sizes, and what a float window of infinities gives.
#include "morph/rank_cases.h"

using namespace test;

#define CHECK_RANK(type, C)                                                                           \
  checkRank("Min_" #type, orviFilterMinBorderReplicate_##type, orviFilterMinGetBufferSize_##type, C), \
      checkRank("Max_" #type, orviFilterMaxBorderReplicate_##type, orviFilterMaxGetBufferSize_##type, C)
TEST(bytes) { CHECK_RANK(8u_C1R, 1), CHECK_RANK(8u_C3R, 3), CHECK_RANK(8u_C4R, 4); }
TEST(floats) { CHECK_RANK(32f_C1R, 1), CHECK_RANK(32f_C3R, 3), CHECK_RANK(32f_C4R, 4); }

TEST(infinities) {
  for (const float value : {INFINITY, -INFINITY})
    for (const auto filter : {orviFilterMinBorderReplicate_32f_C1R, orviFilterMaxBorderReplicate_32f_C1R}) {
      const std::vector<float> src(20, value);
      std::vector<float> dst(20);
      std::vector<uint8_t> buffer(4096);
      CHECK(filter(src.data(), 20, dst.data(), 20, {5, 4}, {3, 3}, {1, 1}, buffer.data()) == orvStatusOk && dst == src);
    }
}

// 2 * h * (P + 32) + 32 * h + 32 with h = 5, P = 100, 300, 400 and 1600.
TEST(sizes) {
  const struct {
    RankBytes size;
    int32_t width, want;
  } cases[] = {{orviFilterMinGetBufferSize_8u_C1R, 7, 1512},
               {orviFilterMaxGetBufferSize_8u_C3R, 1, 3512},
               {orviFilterMinGetBufferSize_32f_C1R, 90, 4512},
               {orviFilterMaxGetBufferSize_32f_C4R, 2, 16512},
               {orviFilterMaxGetBufferSize_8u_C4R, 2, 4512}};
  int32_t bytes = 0;
  for (const auto& c : cases) CHECK(c.size(100, {c.width, 5}, &bytes) == orvStatusOk && bytes == c.want, "%d", bytes);
}
