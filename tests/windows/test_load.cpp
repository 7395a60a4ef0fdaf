// Loads the library by name, finds its exports and calls them, as a host does that was built without it.
#include <doctest/doctest.h>
#include <windows.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/digits.h"
#include "tesk2mp/tesk2mp.h"

namespace {

/// The library, loaded for as long as the object lives.
class Library {
 public:
  explicit Library(const char* name) : handle_(LoadLibraryA(name)) {}
  ~Library() {
    if (loaded()) {
      FreeLibrary(handle_);
    }
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  bool loaded() const { return handle_ != nullptr; }
  bool has(const std::string& name) const { return GetProcAddress(handle_, name.c_str()) != nullptr; }

  /// The export of that name, which must be there. F: a pointer to function.
  template <class F>
  F find(const char* name) const {
    const FARPROC found = GetProcAddress(handle_, name);
    REQUIRE_MESSAGE(bool(found), name);
    return reinterpret_cast<F>(reinterpret_cast<void*>(found));
  }

 private:
  HMODULE handle_;
};

#define FIND(library, name) (library).find<decltype(&name)>(#name)

std::vector<std::string> listed_exports() {
  std::ifstream list("src/generated/exports.def");
  std::vector<std::string> names;
  for (std::string line; std::getline(list, line);) {
    if (line.starts_with("  ")) {
      names.push_back(line.substr(2));
    }
  }
  return names;
}

const Library& library() {
  static const Library loaded("tesk2mp.dll");
  REQUIRE(loaded.loaded());
  return loaded;
}

}  // namespace

TEST_CASE("every listed name is found, and no name from inside") {
  const std::vector<std::string> names = listed_exports();
  REQUIRE(!names.empty());
  for (const std::string& name : names) {
    CHECK_MESSAGE(library().has(name), name);
  }
  for (const char* name : {"c06fafn_", "x02ajf_", "_QuarnMP_x02ajf_", "DllMain", "QuarnMP_nothing_"}) {
    CHECK_MESSAGE(!library().has(name), name);
  }
}

TEST_CASE("the library can be unloaded and loaded again") {
  for (int i = 0; i < 3; ++i) {
    const Library again("tesk2mp.dll");
    REQUIRE(again.loaded());
    CHECK(FIND(again, QuarnMP_x02bhf_)() == 10);
  }
}

TEST_CASE("numbers come back by value") {
  const auto machine_precision = FIND(library(), QuarnMP_x02ajf_);
  for (const int digits : {1, 20, 30, 500}) {
    const support::Digits working(digits);
    CHECK(machine_precision() == QuarnFloat(1, -digits));
  }
  CHECK(FIND(library(), QuarnMP_x02alf_)().to_string() == "1e+134217726");
  CHECK(FIND(library(), QuarnMP_x02akf_)().to_string() == "1e-134217726");
  CHECK(FIND(library(), QuarnMP_x01aaf_)() == QuarnFloat(3.141592653589793));
}

TEST_CASE("numbers go in by value and stay the caller's") {
  const support::Digits working(200);  // past what fits inside the object
  const auto modulus = FIND(library(), QuarnMP_a02abfn_);
  const QuarnFloat third = QuarnFloat(1) / QuarnFloat(3);
  const QuarnFloat x = QuarnFloat(3) * third;
  const QuarnFloat y = QuarnFloat(4) * third;
  const std::string before = x.to_string();
  CHECK(fabs(modulus(x, y) - QuarnFloat(5) * third) <= QuarnFloat(2, -199));
  CHECK(x.to_string() == before);

  const auto divide = FIND(library(), QuarnMP_a02acfn_);
  QuarnFloat real;
  QuarnFloat imaginary;
  divide(QuarnFloat(5), QuarnFloat(10), QuarnFloat(1), QuarnFloat(2), &real, &imaginary);
  CHECK(real == QuarnFloat(5));
  CHECK(imaginary == QuarnFloat(0));
}

TEST_CASE("a transform and its inverse, in both forms") {
  const support::Digits working(60);
  const auto forward = FIND(library(), QuarnMPX_c06faf_);
  const auto backward = FIND(library(), QuarnMPX_c06fbfn_);
  Integer n = 30;
  std::vector<QuarnFloat> x;
  for (Integer i = 0; i < n; ++i) {
    x.push_back(QuarnFloat(i * i % 7) / QuarnFloat(11));
  }
  const std::vector<QuarnFloat> original = x;
  std::vector<QuarnFloat> work(std::size_t(n), QuarnFloat("nan"));

  Integer ifail = 1;
  forward(x.data(), &n, work.data(), &ifail);
  CHECK(ifail == 0);
  QuarnFloat sum;
  for (const QuarnFloat& element : original) {
    sum += element;
  }
  CHECK(fabs(x[0] - sum / sqrt(QuarnFloat(n))) < QuarnFloat(1, -57));

  char message_buffer[200];
  backward(x.data(), n, work.data(), message_buffer, &ifail, int(sizeof message_buffer));
  CHECK(ifail == 0);
  CHECK(std::string(message_buffer) == "NONE");
  for (std::size_t i = 0; i < original.size(); ++i) {
    CHECK(fabs(x[i] - original[i]) < QuarnFloat(1, -57));
  }
}

TEST_CASE("a failure is reported through the message buffer") {
  const auto transform = FIND(library(), QuarnMP_c06fafn_);
  QuarnFloat x;
  QuarnFloat work;
  char message_buffer[200];
  Integer ifail = 1;
  transform(&x, 0, &work, message_buffer, &ifail, int(sizeof message_buffer));
  CHECK(ifail == 3);
  CHECK(std::string(message_buffer) == "C06FAF     3 99999     1                0");
}
