// The arithmetic of complex numbers once more, for hosts whose own header has Complex at global scope: the same code
// under the linker's names that follow from there.
#define QUARN_NO_GLOBAL_NAMES
#include "quarn/quarnfloat.h"

class QUARN_NUMBER Complex : public quarn::Complex {
 public:
  Complex(quarn::Complex&& value) : quarn::Complex(std::move(value)) {}
};
static_assert(sizeof(Complex) == sizeof(quarn::Complex));

QRNFLOAT_API Complex operator+(const Complex& a, const Complex& b);
QRNFLOAT_API Complex operator-(const Complex& a, const Complex& b);
QRNFLOAT_API Complex operator*(const Complex& a, const Complex& b);
QRNFLOAT_API Complex operator/(const Complex& a, const Complex& b);
QRNFLOAT_API void QuarnAddProduct(Complex& sum, const Complex& a, const Complex& b, unsigned how);

Complex operator+(const Complex& a, const Complex& b) { return quarn::operator+(a, b); }
Complex operator-(const Complex& a, const Complex& b) { return quarn::operator-(a, b); }
Complex operator*(const Complex& a, const Complex& b) { return quarn::operator*(a, b); }
Complex operator/(const Complex& a, const Complex& b) { return quarn::operator/(a, b); }
void QuarnAddProduct(Complex& sum, const Complex& a, const Complex& b, unsigned how) {
  QuarnAddProduct(static_cast<quarn::Complex&>(sum), static_cast<const quarn::Complex&>(a),
                  static_cast<const quarn::Complex&>(b), how);
}
