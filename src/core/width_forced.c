/* For programs that choose the vector width themselves: a plain variable in place of the relocated word. */
#include "core/width.h"

intptr_t ownVectorWidth;
