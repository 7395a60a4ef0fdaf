#include "cli/commands/command.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace cli {

namespace {

struct Registration {
  int place;
  const char* name;
  const char* purpose;
  const char* footer;
  Registered::Declare declare;
};

std::vector<Registration>& registrations() {
  static std::vector<Registration> all;
  return all;
}

// Whether the text is a whole number within the bounds, and which.
bool read_number(const std::string& text, Integer least, Integer most, Integer& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number >= least && number <= most;
}

std::string complaint_about_number(const std::string& text, Integer least, Integer most) {
  Integer number = 0;
  return read_number(text, least, most, number)
             ? ""
             : "Value " + text + " not in range " + std::to_string(least) + " to " + std::to_string(most);
}

std::string complaint_about_word(const std::string& word, const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& known : words) {
    if (word == known) {
      return {};
    }
    list += (list.empty() ? "" : &known == &words.back() ? " or " : ", ") + known;
  }
  return "'" + word + "' is not " + list;
}

}  // namespace

Command::Command(std::string name_, std::string purpose_, std::string footer_, Session& session)
    : name(std::move(name_)), purpose(std::move(purpose_)), footer(std::move(footer_)), session_(session) {}

void Command::add(Option option) {
  if (!option.words.empty()) {
    option.complaint = [words = option.words](const std::string& word) { return complaint_about_word(word, words); };
  }
  options.push_back(std::move(option));
}

void Command::argument(const std::string& name_, std::string& target, const std::string& description, bool required) {
  text(name_, "", target, description);
  options.back().required = required;
}

void Command::flag(const std::string& name_, bool& target, const std::string& description) {
  Option option{name_, "", description};
  option.flag = true;
  option.take = [&target](const std::vector<std::string>& /*values*/) { target = true; };
  add(std::move(option));
}

void Command::text(const std::string& name_, const std::string& value, std::string& target,
                   const std::string& description) {
  Option option{name_, value, description};
  option.take = [&target](const std::vector<std::string>& values) { target = values.front(); };
  add(std::move(option));
}

void Command::texts(const std::string& name_, const std::string& value, std::vector<std::string>& target,
                    const std::string& description) {
  Option option{name_, value, description};
  option.repeated = true;
  option.take = [&target](const std::vector<std::string>& values) { target = values; };
  add(std::move(option));
}

void Command::number(const std::string& name_, const std::string& value, Integer& target, Integer least, Integer most,
                     const std::string& description) {
  Option option{name_, value, description};
  option.complaint = [least, most](const std::string& text) { return complaint_about_number(text, least, most); };
  option.take = [&target, least, most](const std::vector<std::string>& values) {
    read_number(values.front(), least, most, target);
  };
  add(std::move(option));
}

void Command::numbers(const std::string& name_, const std::string& value, int count, std::vector<Integer>& target,
                      const std::string& description) {
  constexpr Integer kLeast = std::numeric_limits<Integer>::min();
  constexpr Integer kMost = std::numeric_limits<Integer>::max();
  Option option{name_, value, description};
  option.count = count;
  option.complaint = [](const std::string& text) { return complaint_about_number(text, kLeast, kMost); };
  option.take = [&target](const std::vector<std::string>& values) {
    for (const std::string& text : values) {
      read_number(text, kLeast, kMost, target.emplace_back());
    }
  };
  add(std::move(option));
}

void Command::choice(const std::string& name_, const std::string& value, std::string& target,
                     const std::vector<std::string>& words, const std::string& description) {
  text(name_, value, target, description);
  Option option = std::move(options.back());
  options.pop_back();
  option.words = words;
  add(std::move(option));
}

void Command::add_digits(const char* what) {
  number("--digits", "D", session_.digits, 1, kMostDigits, std::string(what) + ", 1 to 1000000 (default 20)");
  flag("--quiet", session_.quiet, "no progress lines on standard error");
}

Registered::Registered(int place, const char* name, const char* purpose, const char* footer, Declare declare) {
  registrations().push_back({place, name, purpose, footer, declare});
}

std::vector<Command> registered_commands(Session& session) {
  std::vector<Registration> all = registrations();
  std::sort(all.begin(), all.end(), [](const Registration& a, const Registration& b) { return a.place < b.place; });
  std::vector<Command> commands;
  for (const Registration& each : all) {
    Command& command = commands.emplace_back(each.name, each.purpose, each.footer, session);
    each.declare(command);
  }
  return commands;
}

}  // namespace cli
