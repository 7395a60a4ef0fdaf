// arb_tasks: does tasks with Arb's ball arithmetic for bench/python_peers.py, so that both are timed in one run. A line
// `task size bits numbers...` of standard input is answered by a line with the processor seconds, text to balls
// included, the number of results, and for each real part, imaginary part and radius. `?` is the answer to an unknown
// task.
#include <acb_dft.h>
#include <acb_hypgeom.h>
#include <acb_mat.h>
#include <arb_hypgeom.h>
#include <arb_mat.h>
#include <arb_poly.h>

#include <ctime>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

double seconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

/// Complex balls, which free themselves.
class Balls {
 public:
  explicit Balls(std::size_t count) : count_(slong(count)), data_(_acb_vec_init(slong(count))) {}
  Balls(const Balls&) = delete;
  Balls& operator=(const Balls&) = delete;
  ~Balls() { _acb_vec_clear(data_, count_); }

  acb_ptr data() const { return data_; }
  slong count() const { return count_; }
  acb_ptr operator[](slong i) const { return data_ + i; }

 private:
  slong count_;
  acb_ptr data_;
};

/// A real matrix, whose elements are the numbers from the given one on.
class Real {
 public:
  Real(slong rows, slong columns) { arb_mat_init(values, rows, columns); }
  Real(const Texts& numbers, std::size_t from, slong rows, slong columns, slong bits) : Real(rows, columns) {
    for (slong i = 0; i < rows; ++i) {
      for (slong j = 0; j < columns; ++j) {
        arb_set_str(arb_mat_entry(values, i, j), numbers[from++].c_str(), bits);
      }
    }
  }
  Real(const Real&) = delete;
  Real& operator=(const Real&) = delete;
  ~Real() { arb_mat_clear(values); }

  void append(const Balls& results, std::size_t from = 0) const {
    for (slong i = 0; i < arb_mat_nrows(values); ++i) {
      for (slong j = 0; j < arb_mat_ncols(values); ++j) {
        acb_set_arb(results[slong(from++)], arb_mat_entry(values, i, j));
      }
    }
  }

  arb_mat_t values;
};

using Task = std::function<void(slong n, slong bits, const Texts& numbers, const Balls& results)>;

/// A function of each number.
template <class Function>
Task each(Function function) {
  return [function](slong, slong bits, const Texts& numbers, const Balls& results) {
    arb_t x;
    arb_init(x);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      arb_set_str(x, numbers[i].c_str(), bits);
      function(acb_realref(results[slong(i)]), x, bits);
    }
    arb_clear(x);
  };
}

void eigenvalues(slong n, slong bits, const Texts& numbers, const Balls& results) {
  const Real a(numbers, 0, n, n, bits);
  acb_mat_t whole;
  acb_mat_t right;
  acb_mat_init(whole, n, n);
  acb_mat_init(right, n, n);
  acb_mat_set_arb_mat(whole, a.values);
  const Balls near{std::size_t(n)};
  acb_mat_approx_eig_qr(near.data(), nullptr, right, whole, nullptr, 0, bits);
  acb_mat_eig_simple(results.data(), nullptr, nullptr, whole, near.data(), right, bits);
  acb_mat_clear(right);
  acb_mat_clear(whole);
}

void zeros(slong, slong bits, const Texts& numbers, const Balls& results) {
  acb_poly_t polynomial;
  acb_poly_init(polynomial);
  arb_t coefficient;
  arb_init(coefficient);
  acb_t whole;
  acb_init(whole);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    arb_set_str(coefficient, numbers[i].c_str(), bits);
    acb_set_arb(whole, coefficient);
    acb_poly_set_coeff_acb(polynomial, slong(numbers.size() - 1 - i), whole);
  }
  acb_poly_find_roots(results.data(), polynomial, nullptr, 0, bits);
  acb_clear(whole);
  arb_clear(coefficient);
  acb_poly_clear(polynomial);
}

const std::map<std::string, Task> kTasks = {
    {"solve",
     [](slong n, slong bits, const Texts& numbers, const Balls& results) {
       const Real a(numbers, 0, n, n, bits);
       const Real b(numbers, std::size_t(n * n), n, 1, bits);
       Real x(n, 1);
       arb_mat_solve(x.values, a.values, b.values, bits);
       x.append(results);
     }},
    {"inverse",
     [](slong n, slong bits, const Texts& numbers, const Balls& results) {
       const Real a(numbers, 0, n, n, bits);
       Real x(n, n);
       arb_mat_inv(x.values, a.values, bits);
       x.append(results);
     }},
    {"product",
     [](slong n, slong bits, const Texts& numbers, const Balls& results) {
       const Real a(numbers, 0, n, n, bits);
       const Real b(numbers, std::size_t(n * n), n, n, bits);
       Real x(n, n);
       arb_mat_mul(x.values, a.values, b.values, bits);
       x.append(results);
     }},
    {"determinant",
     [](slong n, slong bits, const Texts& numbers, const Balls& results) {
       const Real a(numbers, 0, n, n, bits);
       arb_mat_det(acb_realref(results[0]), a.values, bits);
     }},
    {"expm",
     [](slong n, slong bits, const Texts& numbers, const Balls& results) {
       const Real a(numbers, 0, n, n, bits);
       Real x(n, n);
       arb_mat_exp(x.values, a.values, bits);
       x.append(results);
     }},
    {"eigenvalues", eigenvalues},
    {"zeros", zeros},
    {"transform",
     [](slong, slong bits, const Texts& numbers, const Balls& results) {
       const Balls x(numbers.size());
       for (std::size_t i = 0; i < numbers.size(); ++i) {
         arb_set_str(acb_realref(x[slong(i)]), numbers[i].c_str(), bits);
       }
       acb_dft(results.data(), x.data(), x.count(), bits);
     }},
    {"exp", each([](arb_ptr y, arb_srcptr x, slong bits) { arb_exp(y, x, bits); })},
    {"log", each([](arb_ptr y, arb_srcptr x, slong bits) { arb_log(y, x, bits); })},
    {"sin", each([](arb_ptr y, arb_srcptr x, slong bits) { arb_sin(y, x, bits); })},
    {"atan", each([](arb_ptr y, arb_srcptr x, slong bits) { arb_atan(y, x, bits); })},
    {"gamma", each([](arb_ptr y, arb_srcptr x, slong bits) { arb_gamma(y, x, bits); })},
    {"lgamma", each([](arb_ptr y, arb_srcptr x, slong bits) { arb_lgamma(y, x, bits); })},
    {"digamma", each([](arb_ptr y, arb_srcptr x, slong bits) { arb_digamma(y, x, bits); })},
    {"erf", each([](arb_ptr y, arb_srcptr x, slong bits) { arb_hypgeom_erf(y, x, bits); })},
};

/// How many results a task has.
std::size_t result_count(const std::string& task, std::size_t n, std::size_t numbers) {
  if (task == "solve" || task == "eigenvalues") {
    return n;
  }
  if (task == "inverse" || task == "product" || task == "expm") {
    return n * n;
  }
  return task == "determinant" ? 1 : task == "zeros" ? numbers - 1 : numbers;
}

void print(arb_srcptr x) {
  // More digits than any precision here has.
  char* const text = arb_get_str(x, 100, ARB_STR_MORE | ARB_STR_NO_RADIUS);
  std::cout << ' ' << text;
  flint_free(text);
}

}  // namespace

int main() {
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string name;
    std::size_t n = 0;
    slong bits = 0;
    words >> name >> n >> bits;
    Texts numbers;
    for (std::string word; words >> word;) {
      numbers.push_back(word);
    }
    const auto task = kTasks.find(name);
    if (task == kTasks.end()) {
      std::cout << '?' << std::endl;
      continue;
    }
    const Balls results(result_count(name, n, numbers.size()));
    const double start = seconds();
    task->second(slong(n), bits, numbers, results);
    std::cout << seconds() - start << ' ' << results.count();
    for (slong i = 0; i < results.count(); ++i) {
      print(acb_realref(results[i]));
      print(acb_imagref(results[i]));
      mag_t radius;
      mag_init(radius);
      mag_max(radius, arb_radref(acb_realref(results[i])), arb_radref(acb_imagref(results[i])));
      std::cout << ' ' << mag_get_d(radius);
      mag_clear(radius);
    }
    std::cout << std::endl;
  }
  flint_cleanup();
}
