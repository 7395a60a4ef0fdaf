// Eigenvectors of a Schur form (DTREVC) and condition numbers of its eigenvalues and eigenvectors (DTRSNA): E. Anderson
// et al., LAPACK Users' Guide. The classic entries do not rescale solutions on the way: chains of eight and more equal
// eigenvalues leave the range of exponents. Full accuracy does, and takes matrices of any size.
#include <algorithm>

#include "src/dense/power_of_ten.h"
#include "src/dense/schur_vectors.h"
#include "src/frame/constants.h"
