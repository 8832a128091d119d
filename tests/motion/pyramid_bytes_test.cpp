// The dyadic steps on bytes.
#include "motion/pyramid_roles.h"

using namespace test;

TEST(unsigned_bytes) { CHECK_DYADIC(uint8_t, 8u); }
TEST(signed_bytes) { CHECK_DYADIC(int8_t, 8s); }
