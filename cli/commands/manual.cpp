#include "cli/commands/manual.h"

#include <algorithm>
#include <array>
#include <vector>

namespace cli {

namespace {

constexpr std::array<Topic, 5> kTopics = {{
    {"input", "Input",
     R"(FILE is a file, or - for standard input, that holds columns of numbers:
  - lines of cells between commas, semicolons, tabs or blanks, with or without a
    first line of names; empty lines and lines that start with # do not count;
  - or JSON: an array of numbers, an array of rows, or an object whose arrays are
    the columns. Numbers may stand as text.
MATRIX is such a table, a row of the matrix a line, or a Matrix Market file, coordinate
or array. Complex numbers are written 1.5-2i, or in columns named real and imaginary.
Numbers are decimal text. They are rounded once, to the working digits.)"},
    {"output", "Output",
     R"(Results go to standard output, or to the file that --output names. A file's name that
ends in .csv, .json or .mtx says the format where --format does not.
  text  notes after #, then a table for people, aligned and rounded
  csv   a line of names, then every digit
  json  one object: facts, and arrays of decimal texts that hold every digit
  mtx   of matrices: a Matrix Market file with every digit
What one command writes as csv, json or mtx the others read; entries of a sparse matrix
(columns row, column, value) as mtx alone.
--plot draws a picture as well, by gnuplot; its name ends in .svg or .png.)"},
    {"digits", "Digits",
     R"(--digits D sets the working precision, 1 to 1000000 decimal digits, 20 without it. Every
operation is rounded to D digits, so that results lose some: work with more digits than
you want to see. Classic entries (--classic) carry constants as doubles and give about
16 true digits at any precision.)"},
    {"exit-status", "Exit status",
     R"(  0  done
  1  the library refused, its message on standard error says why
  2  a bad option or a bad input; the message has file and line
  3  the result or the picture could not be written
A run that fails writes no result.)"},
    {"progress", "Progress",
     R"(Work of more than a second shows on standard error how far it is and about how long it
still takes (or how long it has taken so far), in one line that vanishes at the end; not
when standard error is no terminal, and not with --quiet. The environment variable
QUARN_PROGRESS_DELAY sets another time to the first line, in milliseconds.)"},
}};

std::vector<CLI::App*> commands_of(CLI::App& app) {
  return app.get_subcommands([](CLI::App*) { return true; });
}

std::vector<CLI::Option*> options_of(CLI::App& command, bool positional) {
  return command.get_options([positional](CLI::Option* option) { return option->get_positional() == positional; });
}

std::string value_of(const CLI::Option& option) {
  const bool takes = option.get_items_expected_max() > 0;
  return takes ? " " + option.get_type_name() : "";
}

// The words that an option takes, which its validator is named by: "text|csv|json"; empty when they are free.
std::string words_of(CLI::Option& option) {
  try {
    std::string words = option.get_validator(0)->get_name();
    if (words.find('|') == std::string::npos) {
      return {};
    }
    std::replace(words.begin(), words.end(), '|', ' ');
    return words;
  } catch (const CLI::OptionNotFound&) {
    return {};
  }
}

// Text for roff: no line starts a request, and signs stay the plain characters that people type.
std::string roff(const std::string& text) {
  std::string result;
  bool starts = true;
  for (const char c : text) {
    if (starts && (c == '.' || c == '\'')) {
      result += "\\&";
    }
    result += c == '\\' ? "\\e" : c == '-' ? "\\-" : c == '\'' ? "\\(aq" : std::string(1, c);
    starts = c == '\n';
  }
  return result;
}

std::string as_it_stands(const std::string& text) { return ".PP\n.nf\n" + roff(text) + "\n.fi\n"; }

std::string option_entry(const CLI::Option& option) {
  const std::string name = option.get_positional() ? option.get_name(true) : option.get_name(false, true);
  return ".TP\n.B " + roff(name + (option.get_positional() ? "" : value_of(option))) + "\n" +
         roff(option.get_description()) + "\n";
}

// The options that every command has are told once.
std::string command_section(const CLI::App& app, CLI::App& command) {
  std::string usage = "quarn " + command.get_name() + " [OPTIONS]";
  for (const CLI::Option* option : options_of(command, true)) {
    usage += option->get_required() ? " " + option->get_name(true) : " [" + option->get_name(true) + "]";
  }
  std::string text = ".SS " + roff(usage) + "\n" + roff(command.get_description()) + "\n";
  for (const bool positional : {true, false}) {
    for (const CLI::Option* option : options_of(command, positional)) {
      if (positional || app.get_option_no_throw("--" + option->get_lnames().front()) == nullptr) {
        text += option_entry(*option);
      }
    }
  }
  return text + as_it_stands(command.get_footer());
}

std::string capital(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::toupper(c)); });
  return text;
}

std::string joined(const std::vector<std::string>& words, char separator = ' ') {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : std::string(1, separator)) + word;
  }
  return text;
}

// The words that may follow `previous` in a command.
std::string choices_of(const std::string& command, const std::string& previous, const std::string& choices) {
  return "    " + command + "," + previous + ") choices='" + choices + "' ;;\n";
}

}  // namespace

std::span<const Topic> topics() { return kTopics; }

std::string list_of_topics() {
  std::string list;
  for (const Topic& topic : kTopics) {
    list += (list.empty() ? "" : ", ") + std::string(topic.name);
  }
  return list;
}

std::string manual_page(CLI::App& app) {
  std::string text = ".TH QUARN 1 \"\" \"quarn " QUARN_VERSION "\" \"User Commands\"\n.SH NAME\nquarn \\- " +
                     roff("numerical routines in arbitrary decimal precision") +
                     "\n.SH SYNOPSIS\n.B quarn\n.I COMMAND\n[OPTIONS] [FILES]\n.SH DESCRIPTION\n" +
                     roff(
                         "The routines of Tesk MP at the command line: files of numbers in, results out, no digit "
                         "lost on the way.") +
                     "\n.SH OPTIONS\n";
  for (const CLI::Option* option : options_of(app, false)) {
    text += option_entry(*option);
  }
  text += ".SH COMMANDS\n";
  for (CLI::App* command : commands_of(app)) {
    text += command_section(app, *command);
  }
  for (const Topic& topic : kTopics) {
    text += ".SH " + roff(capital(topic.title)) + "\n" + as_it_stands(topic.text);
  }
  return text;
}

std::string bash_completion(CLI::App& app) {
  std::vector<std::string> names;
  std::string cases;
  std::string words;
  for (CLI::App* command : commands_of(app)) {
    std::vector<std::string> options;
    for (CLI::Option* option : options_of(*command, false)) {
      const std::string name = "--" + option->get_lnames().front();
      options.push_back(name);
      if (const std::string choices = words_of(*option); !choices.empty()) {
        words += choices_of(command->get_name(), name, choices);
      }
    }
    names.push_back(command->get_name());
    cases += "    " + command->get_name() + ") options='" + joined(options) + "' ;;\n";
  }
  std::string subjects = joined(names);
  for (const Topic& topic : kTopics) {
    subjects += std::string(" ") + topic.name;
  }
  words += choices_of("help", "help", subjects);
  std::vector<std::string> common;
  for (const CLI::Option* option : options_of(app, false)) {
    common.push_back("--" + option->get_lnames().front());
  }
  return R"(# Completion of quarn's sub-commands and options for bash.
_quarn() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command= options= choices= i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case "${COMP_WORDS[i]}" in
      -*) ;;
      )" +
         joined(names, '|') +
         R"() command=${COMP_WORDS[i]}; break ;;
    esac
  done
  case "$command" in
    '') options=')" +
         joined(common) + R"(' ;;
)" + cases +
         R"(  esac
  case "$command,$previous" in
)" + words +
         R"(  esac
  if [[ -n $choices && $current != -* ]]; then
    COMPREPLY=($(compgen -W "$choices" -- "$current"))
  elif [[ $current == -* ]]; then
    COMPREPLY=($(compgen -W "$options" -- "$current"))
  elif [[ -z $command ]]; then
    COMPREPLY=($(compgen -W ')" +
         joined(names) + R"(' -- "$current"))
  else
    compopt -o filenames 2>/dev/null
    COMPREPLY=($(compgen -f -- "$current"))
  fi
}
complete -F _quarn quarn
)";
}

}  // namespace cli
