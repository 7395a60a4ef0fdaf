// B. N. Parlett, C. Reinsch, Balancing a matrix for calculation of eigenvalues and eigenvectors, Numer. Math. 13
// (1969), as DGEBAL of E. Anderson et al., LAPACK Users' Guide, does it.
#include <algorithm>
#include <initializer_list>

#include "src/dense/power_of_ten.h"
#include "src/frame/constants.h"
#include "src/kernels/level1.h"
