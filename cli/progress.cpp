#include "cli/progress.h"

#include <algorithm>
#include <atomic>
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

void add_duration(Line& line, double seconds) {
  constexpr double kMinute = 60;
  constexpr double kHour = 3600;
  if (seconds < 2 * kMinute) {
    line.add(long(seconds) + 1);
    line.add(" s");
  } else if (seconds < 2 * kHour) {
    line.add(long(seconds / kMinute) + 1);
    line.add(" min");
  } else {
    line.add(long(std::min(seconds / kHour, 1e9)) + 1);
    line.add(" h");
  }
}

void tell(int /*signal*/) {
  constexpr double kAlmostAll = 0.99;
  constexpr double kHardlyAny = 1e-6;
  const double elapsed = now() - work.started;
  const double part =
      std::clamp(work.seconds > 0 ? elapsed / work.seconds : work.done / work.steps, kHardlyAny, kAlmostAll);
  Line line;
  line.add("\r");
  line.add(work.name);
  line.add(": ");
  line.add(long(part * 100));
  line.add(" %, about ");
  add_duration(line, work.seconds > 0 ? work.seconds * (1 - part) : elapsed * (1 - part) / part);
  line.add(" left\x1b[K");
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

Progress Progress::estimated(const std::string& what, double multiply_adds) {
  const bool asked = work.enabled && !work.under_way;
  return {what, 1, asked ? std::max(multiply_adds * seconds_per_multiply_add(), 1e-3) : 0};
}

#endif

}  // namespace cli
