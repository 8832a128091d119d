// Rank filters of 16-bit elements, which erosion and dilation use.
#include "morph/rank_cases.h"
#include "morph/rank_filter_16.h"

using namespace test;

TEST(words) {
  const auto size = ownorviFilterMinGetBufferSize_16u_C1R, sizeMax = ownorviFilterMaxGetBufferSize_16u_C1R;
  const RankCase<uint16_t> words[] = {{"Min_16u", ownorviFilterMinBorderReplicate_16u_C1R, size, 1, false},
                                      {"Max_16u", ownorviFilterMaxBorderReplicate_16u_C1R, sizeMax, 1, true}};
  const RankCase<int16_t> shorts[] = {{"Min_16s", ownorviFilterMinBorderReplicate_16s_C1R, size, 1, false},
                                      {"Max_16s", ownorviFilterMaxBorderReplicate_16s_C1R, sizeMax, 1, true}};
  for (const auto& rank : words) sweepRank(rank), walkRank(rank);
  for (const auto& rank : shorts) sweepRank(rank), walkRank(rank);
  int32_t bytes = 0;
  CHECK(size(100, {3, 5}, &bytes) == orvStatusOk && bytes == 2 * (10 * 232 + 192));
}
