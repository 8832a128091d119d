// Rank filters of 16-bit elements, which erosion and dilation use.
#include "morph/rank_cases.h"
#include "morph/rank_filter_16.h"

using namespace test;

TEST(words) {
  const auto size = ownorviFilterMinGetBufferSize_16u_C1R, sizeMax = ownorviFilterMaxGetBufferSize_16u_C1R;
  checkRank("Min_16u", ownorviFilterMinBorderReplicate_16u_C1R, size, 1);
  checkRank("Max_16u", ownorviFilterMaxBorderReplicate_16u_C1R, sizeMax, 1);
  checkRank("Min_16s", ownorviFilterMinBorderReplicate_16s_C1R, size, 1);
  checkRank("Max_16s", ownorviFilterMaxBorderReplicate_16s_C1R, sizeMax, 1);
  int32_t bytes = 0;
  CHECK(size(100, {3, 5}, &bytes) == orvStatusOk && bytes == 2 * (10 * 232 + 192));
}
