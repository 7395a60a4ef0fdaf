// The QR algorithm on a real upper Hessenberg matrix: Z. Bai, J. Demmel, On a block implementation of Hessenberg
// multishift QR iteration, Int. J. High Speed Comput. 1 (1989), as DHSEQR and DLAHQR of E. Anderson et al., LAPACK
// Users' Guide, do it.
#include "src/dense/hessenberg_qr.h"

#include <algorithm>

#include "src/dense/cluster_shifts.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/reflector.h"
#include "src/dense/tuning.h"
