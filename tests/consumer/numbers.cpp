// The number type and the console alone.
#include "quarn/quarnconsole.h"
#include "quarn/quarnfloat.h"

int main() {
  QuarnSetDigits(40);
  OldQuarnPrintf("%s\n", sqrt(QuarnFloat(2)).to_string().c_str());
}
