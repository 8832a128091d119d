/* orvCV: computer-vision primitives. This header declares everything; a header of orvcv/ declares one family.
 *
 * Conventions of every function:
 * - An image is a pointer to the first pixel of the region of interest and a row step in bytes. Steps are signed 32-bit
 *   numbers, at least as large as a row of the region; nothing is assumed of alignment, also not to the elements.
 * - Arguments are checked in a fixed order (pointers, sizes, steps, step alignment, then the family's own, unless a
 *   function says otherwise); the first failure is returned and nothing has been written then.
 * - All functions may be called from any number of threads at once on disjoint outputs. Large images are processed by
 *   a team of threads inside the call. Results depend on the processor never, on the team in sums of floats only.
 */
#ifndef ORVCV_H
#define ORVCV_H
#include "orvcv/types.h"
#include "orvcv/version.h"
#include "orvcv/angle.h"
#include "orvcv/accumulate.h"
#include "orvcv/abs_diff.h"
#include "orvcv/statistics.h"
#include "orvcv/norm.h"
#include "orvcv/filter_pipeline.h"
#include "orvcv/filter_gaussian.h"
#include "orvcv/filter_fixed.h"
#include "orvcv/morphology.h"
#include "orvcv/rank_filter.h"
#include "orvcv/morphology_replicate.h"
#include "orvcv/reconstruct.h"
#include "orvcv/segmentation.h"
#include "orvcv/flood_fill.h"
#include "orvcv/labelling.h"
#include "orvcv/integral.h"
#include "orvcv/haar.h"
#include "orvcv/canny.h"
#include "orvcv/hough.h"
#include "orvcv/peaks.h"
#include "orvcv/gradient_color.h"
#include "orvcv/corners.h"
#include "orvcv/line_suppression.h"
#include "orvcv/fastn.h"
#include "orvcv/pyramid.h"
#include "orvcv/optical_flow.h"
#include "orvcv/motion_history.h"
#include "orvcv/foreground.h"
#include "orvcv/mixture.h"
#include "orvcv/subpixel.h"
#include "orvcv/undistort.h"
#include "orvcv/super_resolution.h"
#include "orvcv/distance.h"
#include "orvcv/fast_marching.h"
#include "orvcv/inpaint.h"
#endif
