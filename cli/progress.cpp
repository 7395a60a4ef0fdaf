#include "cli/progress.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>

#include "quarn/quarnfloat.h"
#if !defined(_WIN32)
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#endif

namespace cli {

#if defined(_WIN32)

void enable_progress() {}
Progress::Progress(const std::string& /*what*/, double /*steps*/) {}
Progress::Progress(const std::string& /*what*/, double /*steps*/, double /*seconds*/) {}
Progress::~Progress() = default;
void Progress::advance(double /*steps*/) {}
void Progress::reach(double /*steps*/) {}
Progress Progress::estimated(const std::string& what, double /*multiply_adds*/) { return {what, 0, 0}; }

#else

namespace {

constexpr int kStandardError = 2;
constexpr std::size_t kLongestName = 80;

// What the timer's signal handler reads.
struct Work {
  std::atomic<bool> enabled = false;
  std::atomic<bool> under_way = false;
  std::atomic<bool> shown = false;
  std::atomic<double> started = 0;
  std::atomic<double> seconds = 0;  // estimated; 0 when steps are counted
  std::atomic<double> steps = 1;
  std::atomic<double> done = 0;
  char name[kLongestName + 1] = {};
};
static_assert(std::atomic<double>::is_always_lock_free);
Work work;

double now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

// A line made without the C library's formatting, which a signal handler must not call.
class Line {
 public:
  void add(const char* text) {
    while (*text != '\0' && length_ < sizeof text_) {
      text_[length_++] = *text++;
    }
  }
  void add(long number) {
    char digits[24];
    std::size_t at = sizeof digits;
    digits[--at] = '\0';
    do {
      digits[--at] = char('0' + number % 10);
      number /= 10;
    } while (number > 0);
    add(digits + at);
  }
  void write() const { [[maybe_unused]] const auto written = ::write(kStandardError, text_, length_); }

 private:
  char text_[kLongestName + 120];
  std::size_t length_ = 0;
};

void add_duration(Line& line, double seconds, bool rounded_up) {
  constexpr double kMinute = 60;
  constexpr double kHour = 3600;
  const long more = rounded_up ? 1 : 0;
  if (seconds < 2 * kMinute) {
    line.add(long(seconds) + more);
    line.add(" s");
  } else if (seconds < 2 * kHour) {
    line.add(long(seconds / kMinute) + more);
    line.add(" min");
  } else {
    line.add(long(std::min(seconds / kHour, 1e9)) + more);
    line.add(" h");
  }
}

void tell(int /*signal*/) {
  constexpr double kAlmostAll = 0.99;
  constexpr double kTelling = 0.01;
  const double elapsed = now() - work.started;
  const double part = std::min(work.seconds > 0 ? elapsed / work.seconds : work.done / work.steps, kAlmostAll);
  Line line;
  line.add("\r");
  line.add(work.name);
  line.add(": ");
  if (part >= kTelling) {
    line.add(long(part * 100));
    line.add(" %, about ");
    add_duration(line, work.seconds > 0 ? work.seconds * (1 - part) : elapsed * (1 - part) / part, true);
    line.add(" left");
  } else {
    add_duration(line, elapsed, false);
    line.add(" so far");
  }
  line.add("\x1b[K");
  line.write();
  work.shown = true;
}

void set_timer(long first_microseconds, long next_microseconds) {
  constexpr long kMicroseconds = 1'000'000;
  itimerval timer{};
  timer.it_value = {first_microseconds / kMicroseconds, first_microseconds % kMicroseconds};
  timer.it_interval = {next_microseconds / kMicroseconds, next_microseconds % kMicroseconds};
  setitimer(ITIMER_REAL, &timer, nullptr);
}

// The time of one y + a x of full length.
double seconds_per_multiply_add() {
  constexpr double kLongEnough = 0.002;
  const QuarnFloat a = QuarnFloat(1) / 3;
  const QuarnFloat x = QuarnFloat(1) / 7;
  QuarnFloat y = QuarnFloat(1) / 9;
  const double start = now();
  double count = 0;
  while (now() - start < kLongEnough) {
    y = y + a * x;
    ++count;
  }
  return (now() - start) / count;
}

}  // namespace

void enable_progress() {
  if (isatty(kStandardError) == 0) {
    return;
  }
  struct sigaction action {};
  action.sa_handler = tell;
  action.sa_flags = SA_RESTART;
  work.enabled = sigaction(SIGALRM, &action, nullptr) == 0;
}

Progress::Progress(const std::string& what, double steps) : Progress(what, steps, 0) {}

Progress::Progress(const std::string& what, double steps, double seconds) : counts_(work.enabled && !work.under_way) {
  if (!counts_) {
    return;
  }
  constexpr long kFirst = 1'000'000;
  constexpr long kNext = 500'000;
  std::strncpy(work.name, what.c_str(), kLongestName);
  work.started = now();
  work.seconds = seconds;
  work.steps = std::max(steps, 1.0);
  work.done = 0;
  work.shown = false;
  work.under_way = true;
  set_timer(kFirst, kNext);
}

Progress::~Progress() {
  if (!counts_) {
    return;
  }
  set_timer(0, 0);
  work.under_way = false;
  if (work.shown) {
    Line line;
    line.add("\r\x1b[K");
    line.write();
  }
}

void Progress::advance(double steps) {
  if (counts_) {
    work.done = work.done + steps;
  }
}

void Progress::reach(double steps) {
  if (counts_) {
    work.done = steps;
  }
}

Progress Progress::estimated(const std::string& what, double multiply_adds) {
  const bool asked = work.enabled && !work.under_way;
  return {what, 1, asked ? multiply_adds * seconds_per_multiply_add() : 0};
}

#endif

double transform_cost(double n) {
  constexpr double kEvaluation = 30;
  return n * std::log2(n) + n / 2 * kEvaluation;
}

double complex_transform_cost(std::size_t n) {
  constexpr std::size_t kLongestSum = 73;
  constexpr double kConvolutions = 4;
  std::size_t rest = n;
  for (std::size_t factor = 2; factor * factor <= rest; ++factor) {
    while (rest % factor == 0 && rest > factor) {
      rest /= factor;
    }
  }
  return 2 * transform_cost(double(n)) * (rest > kLongestSum ? kConvolutions : 1);
}

}  // namespace cli
