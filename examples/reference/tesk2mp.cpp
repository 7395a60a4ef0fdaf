// Examples of the routine reference: the frame, machine constants, complex arithmetic on separate parts.
#include "tesk2mp/tesk2mp.h"

#include "examples/reference/run.h"

namespace {

void a00aaf() {
  //! [a00aaf]
  QuarnMP_a00aafn_();
  //! [a00aaf]
}

void p01abf() {
  //! [p01abf]
  const char records[][40] = {" ** On entry, N .le. 0: N = -3.", "    N is the order of the matrix."};
  Integer ifail = QuarnMP_p01abfn_(-1, 7, "MYCODE", 2, records[0], 6, sizeof records[0]);
  std::cout << "IFAIL " << ifail << "\n";
  //! [p01abf]
}

void p01acf() {
  //! [p01acf]
  Integer ierror = 2;
  const char record[] = " ** The matrix is not positive definite.";
  Integer ifail = QuarnMP_p01acfn_(-1, ierror, "MYCODE", "INFO", 1, record, 6, 4, sizeof record);
  std::cout << "IFAIL " << ifail << "\n";
  //! [p01acf]
}

void x04aaf() {
  //! [x04aaf]
  Integer read = 0, set = 1, former, silent = -1, n = 0, ifail = -1;
  QuarnFloat x[1], work[1];
  QuarnMP_x04aaf_(&read, &former);
  QuarnMP_x04aaf_(&set, &silent);
  QuarnMP_c06faf_(x, &n, work, &ifail);  // fails, and its message is written nowhere
  QuarnMP_x04aaf_(&set, &former);
  std::cout << "unit " << former << ", IFAIL " << ifail << "\n";
  //! [x04aaf]
}

void x01aaf() {
  //! [x01aaf]
  QuarnSetDigits(40);
  std::cout << QuarnMP_x01aaf_() << "\n" << QuarnMPX_x01aaf_() << "\n";
  //! [x01aaf]
}

void x02ajf() {
  //! [x02ajf]
  QuarnSetDigits(50);
  QuarnFloat eps = QuarnMP_x02ajf_();
  std::cout << eps << " " << (1 + eps == 1) << " " << (1 + 10 * eps == 1) << "\n";
  //! [x02ajf]
}

void x02akf() {
  //! [x02akf]
  std::cout << QuarnMP_x02akf_() << "\n";
  //! [x02akf]
}

void x02alf() {
  //! [x02alf]
  std::cout << QuarnMP_x02alf_() << "\n";
  //! [x02alf]
}

void x02amf() {
  //! [x02amf]
  std::cout << QuarnMP_x02amf_() << " " << 1 / QuarnMP_x02amf_() << "\n";
  //! [x02amf]
}

void x02bhf() {
  //! [x02bhf]
  std::cout << QuarnMP_x02bhf_() << "\n";
  //! [x02bhf]
}

void a02aaf() {
  //! [a02aaf]
  QuarnFloat xr = 0, xi = 2, yr, yi;
  QuarnMP_a02aaf_(&xr, &xi, &yr, &yi);
  std::cout << yr << " + i " << yi << "\n";
  QuarnMPX_a02aaf_(&xr, &xi, &yr, &yi);
  std::cout << yr << " + i " << yi << "\n";
  //! [a02aaf]
}

void a02abf() {
  //! [a02abf]
  std::cout << QuarnMP_a02abfn_(QuarnFloat("3e999999998"), QuarnFloat("4e999999998")) << "\n";
  //! [a02abf]
}

void a02acf() {
  //! [a02acf]
  QuarnFloat zr, zi;
  QuarnMP_a02acfn_(1, 2, 3, -1, &zr, &zi);
  std::cout << zr << " + i " << zi << "\n";
  //! [a02acf]
}

}  // namespace

int main() {
  return run_examples({{"a00aaf", a00aaf},
                       {"p01abf", p01abf},
                       {"p01acf", p01acf},
                       {"x04aaf", x04aaf},
                       {"x01aaf", x01aaf},
                       {"x02ajf", x02ajf},
                       {"x02akf", x02akf},
                       {"x02alf", x02alf},
                       {"x02amf", x02amf},
                       {"x02bhf", x02bhf},
                       {"a02aaf", a02aaf},
                       {"a02abf", a02abf},
                       {"a02acf", a02acf}});
}
