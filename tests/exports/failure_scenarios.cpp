// Plays the scenario that its arguments describe through the exported names. What comes out on standard output, and
// the exit status, are for the caller to judge: a hard failure ends the process.
//
//   unit N                        set the error-message unit
//   banner                        print the implementation details
//   end IFAIL IERROR NREC         end a routine with the first NREC of two records; a third word LONG in place of NREC
//                                 hands over one record that is longer than its stride
//   end-naming IFAIL IERROR NAME  end a routine, naming a variable
//   kernel TRANS                  DGEMV on an empty matrix with this option
//   classic ROUTINE IFAIL N       a transform of length N through its classic form
//   core ROUTINE IFAIL N          the same through its core form
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "tesk2mp/tesk2mp.h"

namespace {

constexpr int kStride = 80;

/// Gives out the words of the scenario one by one.
class Words {
 public:
  Words(int count, char** words) : words_(words, words + count) {}
  bool more() const { return next_ < words_.size(); }
  std::string text() { return words_.at(next_++); }
  Integer integer() { return Integer(std::stol(text())); }

 private:
  std::vector<std::string> words_;
  std::size_t next_ = 1;
};

void end_routine(Words& words) {
  const Integer ifail = words.integer();
  const Integer ierror = words.integer();
  const std::string records_wanted = words.text();
  char records[2 * kStride] = {};
  Integer nrec = 1;
  if (records_wanted == "LONG") {
    std::memset(records, 'x', kStride + 20);
  } else {
    nrec = Integer(std::stol(records_wanted));
    std::strcpy(records, " first record");
    std::strcpy(records + kStride, " second record");
  }
  std::printf("[%d]\n", int(QuarnMP_p01abfn_(ifail, ierror, "C06FAF", nrec, records, 6, kStride)));
}

void end_routine_naming(Words& words) {
  const Integer ifail = words.integer();
  const Integer ierror = words.integer();
  const std::string name = words.text();
  std::printf("[%d]\n", int(QuarnMP_p01acfn_(ifail, ierror, "F06PAF", name.c_str(), 1, " the record", 6,
                                             int(name.size()), kStride)));
}

struct Routine {
  decltype(&QuarnMP_c06faf_) classic;
  decltype(&QuarnMP_c06fafn_) core;
};

const std::map<std::string, Routine> kRoutines = {
    {"c06faf", {QuarnMP_c06faf_, QuarnMP_c06fafn_}},
    {"c06fbf", {QuarnMP_c06fbf_, QuarnMP_c06fbfn_}},
    {"full c06faf", {QuarnMPX_c06faf_, QuarnMPX_c06fafn_}},
    {"full c06fbf", {QuarnMPX_c06fbf_, QuarnMPX_c06fbfn_}},
};

void transform(Words& words, bool classic) {
  const Routine& routine = kRoutines.at(words.text());
  Integer ifail = words.integer();
  Integer n = words.integer();
  std::vector<QuarnFloat> x(std::size_t(n > 1 ? n : 1), QuarnFloat(1));
  std::vector<QuarnFloat> work(x.size());
  if (classic) {
    routine.classic(x.data(), &n, work.data(), &ifail);
    std::printf("[%d]", int(ifail));
  } else {
    char message_buffer[200];
    std::memset(message_buffer, '?', sizeof message_buffer);
    routine.core(x.data(), n, work.data(), message_buffer, &ifail, int(sizeof message_buffer));
    std::printf("[%d][%s]%s", int(ifail), message_buffer, message_buffer[199] == '\0' ? "" : "[no NUL at the end]");
  }
  for (const QuarnFloat& element : x) {
    if (ifail != 0 && element != QuarnFloat(1)) {
      std::printf("[x changed]");
    }
  }
  std::printf("\n");
}

void play(Words& words) {
  while (words.more()) {
    const std::string what = words.text();
    if (what == "unit") {
      Integer set = 1;
      Integer unit = words.integer();
      QuarnMP_x04aaf_(&set, &unit);
    } else if (what == "banner") {
      QuarnMP_a00aafn_();
    } else if (what == "end") {
      end_routine(words);
    } else if (what == "end-naming") {
      end_routine_naming(words);
    } else if (what == "kernel") {
      QuarnMP_f06paf_(words.text().c_str(), 0, 0, 1, nullptr, 1, nullptr, 1, 1, nullptr, 1, 1);
      std::printf("[done]\n");
    } else {
      transform(words, what == "classic");
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  Words words(argc, argv);
  play(words);
}
