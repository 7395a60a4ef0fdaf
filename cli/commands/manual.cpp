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
A first column of numbers or dates (2024-03-31, 31.03.2024, with or without a time) that
are evenly spaced gives the unit of an axis. Files compressed by gzip are read as well.
--skip, --decimal and --missing say what a table leaves open.
Numbers are decimal text. They are rounded once, to the working digits; for a proof they are
taken with all their digits.)"},
    {"output", "Output",
     R"(Results go to standard output, or to the file that --output names. A file's name that
ends in .csv, .json or .mtx says the format where --format does not.
  text  notes after #, then a table for people, aligned and rounded
  csv   a line of names, then every digit
  json  one object: facts, and arrays of decimal texts that hold every digit
  mtx   of matrices: a Matrix Market file with every digit
What one command writes as csv, json or mtx the others read; entries of a sparse matrix
(columns row, column, value) as mtx alone.
--plot draws a picture as well, by gnuplot; its name ends in .svg, .png or .pdf. --plot - draws
with characters, below the result.)"},
    {"digits", "Digits",
     R"(--digits D sets the working precision, 1 to 1000000 decimal digits, 20 without it. Every
operation is rounded to D digits, so that results lose some: work with more digits than
you want to see. In solve, inv, det, norm, lstsq, eig, svd, zeros, fft, cfft, dct and dst D
digits of the result are proven to be true instead, by as many working digits as that takes;
in lu, chol, pinv and null two computations agree to them. --working-digits D computes once
with D. Options that ask for what has no proof (--method, --vectors and the like) make D the
working precision. Classic entries (--classic) carry constants as doubles and give
about 16 true digits at any precision.)"},
    {"exit-status", "Exit status",
     R"(  0  done
  1  the library refused, its message on standard error says why
  2  a bad option or a bad input; the message has file and line
  3  the result or the picture could not be written
130  Ctrl-C ended it
A run that fails writes no result.)"},
    {"progress", "Progress",
     R"(Work of more than a second shows on standard error how far it is and about how long it
still takes (or how long it has taken so far), in one line that vanishes at the end; not
when standard error is no terminal, and not with --quiet. The environment variable
QUARN_PROGRESS_DELAY sets another time to the first line, in milliseconds.)"},
}};

// What every command has beside its own options.
const Option kHelp{"-h,--help", "", "show this page"};
const Option kVersion{"--version", "", "show the version"};

// The name of an option alone: the first with two dashes.
std::string long_name(const Option& option) {
  const std::size_t start = option.name.find("--");
  return option.name.substr(start, option.name.find(',', start) - start);
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

std::string option_entry(const Option& option) {
  const std::string name = option.name + (option.value.empty() ? "" : " " + option.value);
  return ".TP\n.B " + roff(name) + "\n" + roff(option.description) + "\n";
}

// The options that every command has stand in a section of their own.
std::string command_section(const Program& program, const Command& command) {
  std::string usage = "quarn " + command.name + " [OPTIONS]";
  std::string arguments;
  std::string options;
  for (const Option& option : command.options) {
    const auto same = [&](const Option& other) { return other.name == option.name; };
    if (option.positional()) {
      usage += option.required ? " " + option.name : " [" + option.name + "]";
      arguments += option_entry(option);
    } else if (std::none_of(program.whole.options.begin(), program.whole.options.end(), same)) {
      options += option_entry(option);
    }
  }
  return ".SS " + roff(usage) + "\n" + roff(command.purpose) + "\n" + arguments + options +
         as_it_stands(command.footer);
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

std::string manual_page(const Program& program) {
  std::string text = ".TH QUARN 1 \"\" \"quarn " QUARN_VERSION "\" \"User Commands\"\n.SH NAME\nquarn \\- " +
                     roff("numerical routines in arbitrary decimal precision") +
                     "\n.SH SYNOPSIS\n.B quarn\n.I COMMAND\n[OPTIONS] [FILES]\n.SH DESCRIPTION\n" +
                     roff(
                         "The routines of Tesk MP at the command line: files of numbers in, results out, no digit "
                         "lost on the way.") +
                     "\n.SH OPTIONS\n" + option_entry(kVersion) + option_entry(kHelp);
  for (const Option& option : program.whole.options) {
    text += option_entry(option);
  }
  text += ".SH COMMANDS\n";
  for (const Command& command : program.commands) {
    text += command_section(program, command);
  }
  for (const Topic& topic : kTopics) {
    text += ".SH " + roff(capital(topic.title)) + "\n" + as_it_stands(topic.text);
  }
  return text;
}

std::string bash_completion(const Program& program) {
  std::vector<std::string> names;
  std::string cases;
  std::string words;
  for (const Command& command : program.commands) {
    std::vector<std::string> options = {long_name(kHelp)};
    for (const Option& option : command.options) {
      if (!option.positional()) {
        options.push_back(long_name(option));
        words += option.words.empty() ? "" : choices_of(command.name, options.back(), joined(option.words));
      }
    }
    names.push_back(command.name);
    cases += "    " + command.name + ") options='" + joined(options) + "' ;;\n";
  }
  std::string subjects = joined(names);
  for (const Topic& topic : kTopics) {
    subjects += std::string(" ") + topic.name;
  }
  words += choices_of("help", "help", subjects);
  std::vector<std::string> common = {long_name(kVersion), long_name(kHelp)};
  for (const Option& option : program.whole.options) {
    common.push_back(long_name(option));
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
