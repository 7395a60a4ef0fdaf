// The zeros of a quartic as the eigenvalues of its companion matrix.

#include "src/frame/classic.h"
#include "src/frame/constants.h"
#include "src/kernels/level1.h"
