// Sub-commands as data: the reading of command lines, the help, the manual page and the completion all go by it.
//
// A command registers itself: its file under commands/ defines one Registered, and nothing else names it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/io/number_text.h"

namespace cli {

inline constexpr Integer kDefaultDigits = 20;

/// What holds for the whole run, whatever the command.
struct Session {
  Integer digits = kDefaultDigits;
  bool quiet = false;
};

/// An option, or an argument by its position.
struct Option {
  std::string name;   // "--digits", "--inverse,--backward", "FILE"
  std::string value;  // what stands for its value in the help; none for flags and arguments
  std::string description;
  bool required = false;
  bool flag = false;
  bool repeated = false;                // may be given several times
  int count = 1;                        // of values, for all but flags
  std::vector<std::string> words = {};  // the only values, where there are such
  /// About a value; empty for a good one.
  std::function<std::string(const std::string&)> complaint = {};
  /// May throw Failure.
  std::function<void(const std::vector<std::string>& values)> take = {};

  bool positional() const { return !name.starts_with("-"); }
};

/// What a command is called with, and what it does. The targets of options must outlive it.
class Command {
 public:
  Command(std::string name, std::string purpose, std::string footer, Session& session);

  void argument(const std::string& name, std::string& target, const std::string& description, bool required = true);
  void flag(const std::string& name, bool& target, const std::string& description);
  void text(const std::string& name, const std::string& value, std::string& target, const std::string& description);
  /// One text for each time that the option is given.
  void texts(const std::string& name, const std::string& value, std::vector<std::string>& target,
             const std::string& description);
  void number(const std::string& name, const std::string& value, Integer& target, Integer least, Integer most,
              const std::string& description);
  /// So many whole numbers.
  void numbers(const std::string& name, const std::string& value, int count, std::vector<Integer>& target,
               const std::string& description);
  void choice(const std::string& name, const std::string& value, std::string& target,
              const std::vector<std::string>& words, const std::string& description);
  void add(Option option);
  /// --digits and --quiet
  void add_digits(const char* what = "working precision in decimal digits");

  std::string name;
  std::string purpose;
  std::string footer;
  std::vector<Option> options;
  std::function<void()> check;  // what the options may not be together; throws Failure
  std::function<void()> work;

 private:
  Session& session_;
};

/// Declares a sub-command. They are listed by their places.
class Registered {
 public:
  using Declare = void (*)(Command& command);

  Registered(int place, const char* name, const char* purpose, const char* footer, Declare declare);
};

/// All sub-commands in their order.
std::vector<Command> registered_commands(Session& session);

}  // namespace cli
