#include "cli/system/progress.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "quarn/quarnthread.h"
#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/time.h>

#include <csignal>
#endif

namespace cli {

namespace {

constexpr int kStandardError = 2;
constexpr std::size_t kLongestName = 80;
constexpr long kFirstLine = 1000;  // milliseconds, unless QUARN_PROGRESS_DELAY says another time
constexpr long kNextLine = 500;

// What the timer reads: a signal handler, or a thread of the system on Windows.
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

double now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

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

void tell() {
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

long first_line() {
  constexpr long kLatest = 86'400'000;
  const char* text = std::getenv("QUARN_PROGRESS_DELAY");
  long delay = kFirstLine;
  if (text != nullptr) {
    const auto [end, error] = std::from_chars(text, text + std::strlen(text), delay);
    delay = error == std::errc() && *end == '\0' ? std::clamp(delay, 1L, kLatest) : kFirstLine;
  }
  return delay;
}

#if defined(_WIN32)

HANDLE timer = nullptr;

// Asks for the escape sequence that clears the rest of a line, which no file or pipe has and no old console knows.
bool timer_can_tell() {
  const HANDLE standard_error = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  return GetConsoleMode(standard_error, &mode) != 0 &&
         SetConsoleMode(standard_error, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

void start_timer() {
  const auto on_timer = [](void* /*context*/, BOOLEAN /*fired*/) __stdcall { tell(); };
  CreateTimerQueueTimer(&timer, nullptr, on_timer, nullptr, DWORD(first_line()), kNextLine, WT_EXECUTEDEFAULT);
}

// Waits for a line that is being written.
void stop_timer() {
  if (timer != nullptr) {
    DeleteTimerQueueTimer(nullptr, timer, INVALID_HANDLE_VALUE);
    timer = nullptr;
  }
}

#else

bool timer_can_tell() {
  if (isatty(kStandardError) == 0) {
    return false;
  }
  struct sigaction action {};
  action.sa_handler = [](int /*signal*/) { tell(); };
  action.sa_flags = SA_RESTART;
  return sigaction(SIGALRM, &action, nullptr) == 0;
}

timeval time_of(long milliseconds) { return {milliseconds / 1000, milliseconds % 1000 * 1000}; }

void start_timer() {
  const itimerval times = {time_of(kNextLine), time_of(first_line())};
  setitimer(ITIMER_REAL, &times, nullptr);
}

void stop_timer() {
  const itimerval none{};
  setitimer(ITIMER_REAL, &none, nullptr);
}

#endif

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

void enable_progress() { work.enabled = timer_can_tell(); }

Progress::Progress(const std::string& what, double steps) : Progress(what, steps, 0) {}

Progress::Progress(const std::string& what, double steps, double seconds) : counts_(work.enabled && !work.under_way) {
  if (!counts_) {
    return;
  }
  std::strncpy(work.name, what.c_str(), kLongestName);
  work.started = now();
  work.seconds = seconds;
  work.steps = std::max(steps, 1.0);
  work.done = 0;
  work.shown = false;
  work.under_way = true;
  start_timer();
}

Progress::~Progress() {
  if (!counts_) {
    return;
  }
  stop_timer();
  work.under_way = false;
  if (work.shown) {
    Line line;
    line.add("\r\x1b[K");
    line.write();
  }
}

void Progress::advance(double steps) {
  QuarnCheckInterrupt();
  if (counts_) {
    work.done = work.done + steps;
  }
}

void Progress::reach(double steps) {
  QuarnCheckInterrupt();
  if (counts_) {
    work.done = steps;
  }
}

Progress Progress::estimated(const std::string& what, double multiply_adds) {
  const bool asked = work.enabled && !work.under_way;
  return {what, 1, asked ? multiply_adds * seconds_per_multiply_add() : 0};
}

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
