// SPDX-License-Identifier: Apache-2.0

// Writes manual pages and completions into a folder, from the same table of commands that --help is made of:
//   guide FOLDER            texturon.1, texturon.bash, _texturon
//   guide FOLDER NAME       NAME.1 from the text of its --help on standard input

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/document_export.h"
#include "app/command_table.h"
#include "settings/settings_table.h"

namespace texturon {
namespace {

/// Text of a manual page: hyphens that are typed, backslashes and leading dots are not the formatter's.
std::string Roff(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if ((c == '.' || c == '\'') && (out.empty() || out.back() == '\n')) out += "\\&";
    if (c == '-' || c == '\\') out += '\\';
    out += c;
    if (c == '\\') out.replace(out.size() - 2, 2, "\\e");
  }
  return out;
}

std::string Upper(std::string text) {
  for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return text;
}

std::string PageHead(const std::string& name, std::string_view about) {
  return ".\\\" SPDX-License-Identifier: Apache-2.0\n.TH " + Upper(name) +
         " 1 \"\" \"texturon " TEXTURON_VERSION "\" \"User Commands\"\n.SH NAME\n" + Roff(name) + " \\- " +
         Roff(about) + "\n";
}

/// What stands for the value of an option, without the conditions that the parser adds to it ("N:POSITIVE").
std::string Placeholder(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return type.substr(0, type.find(':'));
}

/// An option or argument as it is typed, its placeholder in italics.
std::string Typed(const CLI::Option& option) {
  std::string text = option.nonpositional() ? "\\fB" + Roff(option.get_name(false, true)) + "\\fR" : std::string();
  if (const std::string type = Placeholder(option); !type.empty() && option.get_expected_max() > 0) {
    text += (text.empty() ? "\\fI" : " \\fI") + Roff(type) + "\\fR";
  }
  return text;
}

bool IsHelp(const CLI::Option& option) {
  return option.get_name(false, true).find("--help") != std::string::npos;
}

std::string CommandPart(const CLI::App& command) {
  std::string text = ".SS \"texturon " + Roff(command.get_name());
  for (const CLI::Option* const option : command.get_options()) {
    if (!option->nonpositional()) text += " " + Placeholder(*option);
  }
  text += " [OPTIONS]\"\n" + Roff(command.get_description()) + ".\n";
  for (const CLI::Option* const option : command.get_options()) {
    if (!IsHelp(*option)) text += ".TP\n" + Typed(*option) + "\n" + Roff(option->get_description()) + "\n";
  }
  return text;
}

std::string ManualPage(const CLI::App& app) {
  std::string text = PageHead("texturon", "surface texture analysis of profiles");
  text += ".SH SYNOPSIS\n.B texturon\n.I COMMAND\n[\\fIOPTIONS\\fR]\n.br\n.B texturon\n.I PLAN.ini DATA OUTDIR\n";
  text +=
      ".SH DESCRIPTION\nReads profiles of many instruments, removes the nominal form, filters, computes the parameters "
      "of ISO 4287, ISO 13565, ISO 12085 and their kin, and prints or exports them. It needs no screen. With three "
      "arguments that begin with no command, or with a plan (.ini), it runs that test plan.\n.SH COMMANDS\n";
  for (const CLI::App* const command : app.get_subcommands({})) text += CommandPart(*command);
  text +=
      ".SH EXIT STATUS\n.TP\n0\nDone.\n.TP\n1\nSomething was refused or failed; standard error has a sentence for "
      "each.\n.TP\n2\nThe command line is wrong, or an output is an input.\n.SH EXAMPLES\n.nf\n"
      "texturon analyze trace.lmt\n"
      "texturon analyze trace.lmt \\-\\-set ANALYSIS.LcCutoffMM=0.8 \\-\\-json\n"
      "texturon batch traces \\-\\-parameter\\-file rows.csv\n.fi\n"
      ".SH SEE ALSO\n.BR texturon\\-desktop (1),\nthe documentation in /usr/share/doc/texturon.\n";
  return text;
}

/// The words that may follow an option: a closed choice ("yes|no"), else nothing.
std::vector<std::string> ChoicesOf(const CLI::Option& option) {
  const std::string type = Placeholder(option);
  std::vector<std::string> choices;
  if (type.find('|') == std::string::npos) return choices;
  std::istringstream words(type);
  for (std::string word; std::getline(words, word, '|');) choices.push_back(word);
  return choices;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::vector<std::string> SettingWords() {
  std::vector<std::string> words;
  for (const SettingKey& key : SettingsTable())
    words.push_back(std::string(key.binding.section) + "." + KeyOfRow(key.binding, 0) + "=");
  return words;
}

std::vector<std::string> ExportWords() {
  std::vector<std::string> words;
  for (const ExportKind& kind : ExportKinds()) words.emplace_back(kind.name);
  return words;
}

std::string BashCompletion(const CLI::App& app) {
  std::vector<std::string> commands;
  std::string options;
  std::string choices;
  for (const CLI::App* const command : app.get_subcommands({})) {
    commands.push_back(command->get_name());
    std::vector<std::string> names;
    for (const CLI::Option* const option : command->get_options()) {
      for (const std::string& name : option->get_lnames()) {
        names.push_back("--" + name);
        const std::string words = Joined(ChoicesOf(*option));
        const std::string row = "    --" + name + ") words=\"" + words + "\" ;;\n";
        if (!words.empty() && choices.find(row) == std::string::npos) choices += row;
      }
      for (const std::string& name : option->get_snames()) names.push_back("-" + name);
    }
    options += "    " + command->get_name() + ") words=\"" + Joined(names) + "\" ;;\n";
  }
  return "# SPDX-License-Identifier: Apache-2.0\n# Completion of texturon for bash.\n"
         "_texturon() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} words=\n"
         "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
         "    COMPREPLY=($(compgen -W \"" +
         Joined(commands) +
         " --help --version\" -- \"$current\") "
         "$(compgen -f -X '!*.ini' -- \"$current\"))\n"
         "    return\n"
         "  fi\n"
         "  case $previous in\n" +
         choices + "    --set) words=\"" + Joined(SettingWords()) +
         "\"; compopt -o nospace ;;\n"
         "  esac\n"
         "  [ -z \"$words\" ] && [[ $current == -* ]] && case ${COMP_WORDS[1]} in\n" +
         options +
         "  esac\n"
         "  [ -z \"$words\" ] && [ \"${COMP_WORDS[1]}\" = export ] && [ \"$COMP_CWORD\" -eq 3 ] && words=\"" +
         Joined(ExportWords()) +
         "\"\n"
         "  if [ -n \"$words\" ]; then\n"
         "    COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
         "  else\n"
         "    compopt -o filenames\n"
         "    COMPREPLY=($(compgen -f -- \"$current\"))\n"
         "  fi\n"
         "}\n"
         "complete -F _texturon texturon\n";
}

/// A text within single quotes of _arguments.
std::string ZshText(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '\'') {
      out += "'\\''";
    } else {
      if (c == ':' || c == '[' || c == ']') out += '\\';
      out += c;
    }
  }
  return out;
}

std::string ZshOption(const CLI::Option& option) {
  std::string text;
  const bool takes = option.get_expected_max() > 0;
  const std::string words = Joined(ChoicesOf(option));
  const std::string action = option.get_name(false, true).find("--set") == 0 &&
                                     option.get_name(false, true).find("--settings") == std::string::npos
                                 ? "(" + Joined(SettingWords()) + ")"
                             : words.empty() ? "_files"
                                             : "(" + words + ")";
  const std::string what = ZshText(Placeholder(option));
  for (const std::string& name : option.get_lnames()) {
    text += "        '" + std::string(name == "set" ? "*" : "") + "--" + name + "[" +
            ZshText(option.get_description()) + "]" + (takes ? ":" + what + ":" + action : "") + "' \\\n";
  }
  return text;
}

std::string ZshCompletion(const CLI::App& app) {
  std::string commands;
  std::string cases;
  for (const CLI::App* const command : app.get_subcommands({})) {
    commands += "    '" + command->get_name() + ":" + ZshText(command->get_description()) + "'\n";
    cases += "    " + command->get_name() + ")\n      _arguments \\\n";
    for (const CLI::Option* const option : command->get_options()) cases += ZshOption(*option);
    cases += command->get_name() == "export" ? "        '1:FILE:_files' '2:KIND:(" + Joined(ExportWords()) + ")'\n"
                                             : std::string("        '*:FILE:_files'\n");
    cases += "      ;;\n";
  }
  return "#compdef texturon\n# SPDX-License-Identifier: Apache-2.0\n"
         "local -a commands\ncommands=(\n" +
         commands +
         ")\n"
         "if (( CURRENT == 2 )); then\n  _describe command commands\n  _files -g '*.ini'\nelse\n"
         "  local command=$words[2]\n  shift words\n  (( CURRENT-- ))\n  case $command in\n" +
         cases + "    *) _files ;;\n  esac\nfi\n";
}

/// The page of a program from what its --help prints: the options are the lines that begin with a blank and a dash.
std::string PageOfHelp(const std::string& name, std::istream& help) {
  std::string text = PageHead(name, "surface texture analysis of profiles, in a window");
  std::string synopsis;
  std::string options;
  for (std::string line; std::getline(help, line);) {
    if (line.starts_with("Usage: ")) synopsis = line.substr(line.find(' ', 7) + 1);
    const std::size_t from = line.find_first_not_of(' ');
    if (from == std::string::npos || from == 0) continue;
    const std::size_t gap = line.find("  ", from);
    const std::string about = gap == std::string::npos ? "" : line.substr(line.find_first_not_of(' ', gap));
    if (line[from] == '-') {
      options += ".TP\n\\fB" + Roff(line.substr(from, gap - from)) + "\\fR\n" + Roff(about) + "\n";
    } else if (from > 4 && !options.empty()) {
      options += Roff(line.substr(from)) + "\n";
    }
  }
  return text + ".SH SYNOPSIS\n.B " + Roff(name) + "\n" + Roff(synopsis) +
         "\n.SH DESCRIPTION\nShows a profile with its form, waviness and roughness, its curves and its parameters, and "
         "judges them against limits. With \\-\\-report or \\-\\-screenshot it works without a screen. Figures are "
         "those "
         "of\n.BR texturon (1).\n.SH OPTIONS\n" +
         options + ".SH SEE ALSO\n.BR texturon (1)\n";
}

bool Write(const std::filesystem::path& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary);
  out << text << std::flush;
  if (!out) std::cerr << "guide: " << file.string() << " cannot be written.\n";
  return static_cast<bool>(out);
}

bool WriteAll(const std::filesystem::path& folder) {
  CLI::App app;
  app.name("texturon");
  CommonOptions common;
  int status = 0;
  for (const ConsoleCommand& command : CommandTable()) {
    command.add(*app.add_subcommand(std::string(command.name), std::string(command.about)), common, status);
  }
  return Write(folder / "texturon.1", ManualPage(app)) && Write(folder / "texturon.bash", BashCompletion(app)) &&
         Write(folder / "_texturon", ZshCompletion(app));
}

}  // namespace
}  // namespace texturon

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: guide FOLDER [NAME < help]\n";
    return 2;
  }
  const bool done = argc == 2 ? texturon::WriteAll(argv[1])
                              : texturon::Write(std::filesystem::path(argv[1]) / (std::string(argv[2]) + ".1"),
                                                texturon::PageOfHelp(argv[2], std::cin));
  return done ? 0 : 1;
}
