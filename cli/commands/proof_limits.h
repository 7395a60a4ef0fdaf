// How far proofs go.
#pragma once

#include "quarn/quarnfloat.h"

namespace cli {

struct ProofLimits {
  Integer once = 0;  // working digits of a single computation without a proof; 0: proofs
  Integer seconds = 60;
  bool insisted = false;  // nothing is shown that is not proven
  bool errors = false;    // bounds are shown as well
};

}  // namespace cli
