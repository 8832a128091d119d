// The integral image of floats against its plain form.
#include "detect/table_roles.h"
#include "reference/integral.h"

using namespace test;

TEST(floats) {
  const Larger<float> table(Out<float>(), 1, 1);
  sweep("orviIntegral_32f_C1R", orviIntegral_32f_C1R, reference::integralOfFloats, {1100, 27}, wild(In<float>()), table,
        Roi());
  walkArguments("orviIntegral_32f_C1R", orviIntegral_32f_C1R, tableChecks({0, 1}, {0, 1}, 2), In<float>(), table,
                Roi());
}
