// The dyadic steps on floats.
// One body serves both variants.
#include "motion/pyramid_roles.h"

using namespace test;

TEST(floats) { CHECK_DYADIC(float, 32f); }
