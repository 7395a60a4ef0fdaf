// The same failure reported in three ways: 23 is a prime that the transform does not take.
#include <cstdio>
#include <vector>

#include "tesk2mp/tesk2mp.h"

int main() {
  std::vector<QuarnFloat> x(23, 1);
  std::vector<QuarnFloat> work(x.size());
  Integer n = Integer(x.size());

  std::printf("IFAIL = -1 on entry: messages, and control comes back\n");
  Integer ifail = -1;
  QuarnMPX_c06faf_(x.data(), &n, work.data(), &ifail);
  std::printf("IFAIL = %d on exit\n\n", int(ifail));

  std::printf("IFAIL = 1: no message, only the newlines of the texts it has formatted\n");
  ifail = 1;
  QuarnMPX_c06faf_(x.data(), &n, work.data(), &ifail);
  std::printf("IFAIL = %d on exit\n\n", int(ifail));

  std::printf("The core form hands the same facts over for programs:\n");
  char message[200];
  ifail = 1;
  QuarnMPX_c06fafn_(x.data(), n, work.data(), message, &ifail, sizeof message);
  std::printf("'%s'\n", message);
}
