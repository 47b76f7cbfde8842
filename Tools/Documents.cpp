#include <functional>
#include <string>
#include <vector>

#include "Tools/CommandLine.h"

namespace hlv::sandbox::tool {
namespace {

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

/// `visit` gets each command and how it is called, the outer one first.
void visitAll(const CLI::App& app, const std::string& call,
              const std::function<void(const CLI::App&, const std::string&)>& visit) {
  visit(app, call);
  for (const auto* command : commandsOf(app)) {
    visitAll(*command, call + " " + command->get_name(), visit);
  }
}

/// For roff: hyphens to copy and no line that is taken for a request.
std::string roff(const std::string& text) {
  std::string result;
  bool beginsLine = true;
  for (const char character : text) {
    if (beginsLine && (character == '.' || character == '\'')) result += "\\&";
    if (character == '\\') {
      result += "\\e";
    } else if (character == '-') {
      result += "\\-";
    } else {
      result += character;
    }
    beginsLine = character == '\n';
  }
  return result;
}

std::string optionsOf(const CLI::App& app) {
  std::string text;
  for (const auto* option : app.get_options()) {
    const auto type = option->get_type_size() > 0 ? " " + option->get_type_name() : "";
    const auto name =
        option->nonpositional() ? option->get_name(false, true) + type : option->get_name(true);
    text += ".TP\n.B " + roff(name) + "\n" + roff(option->get_description()) + "\n";
  }
  return text;
}

std::string manualPage(const CLI::App& app) {
  std::string text = ".TH PAYLEVENKIT 1 \"\" \"paylevenkit " PAYLEVENKIT_VERSION
                     "\"\n.SH NAME\npaylevenkit \\- " +
                     roff(app.get_description()) +
                     "\n.SH SYNOPSIS\n.B paylevenkit\n[\\fIOPTIONS\\fR] \\fICOMMAND\\fR "
                     "[\\fIARGUMENTS\\fR]\n.SH OPTIONS FOR EVERY COMMAND\n" +
                     optionsOf(app) + ".SH COMMANDS\n";
  visitAll(app, "paylevenkit", [&](const CLI::App& command, const std::string& call) {
    if (&command == &app) return;
    text += ".SS " + roff(call) + "\n" + roff(command.get_description()) + "\n" +
            optionsOf(command) + ".PP\n.nf\n" + roff(command.get_footer()) + "\n.fi\n";
  });
  text +=
      ".SH EXIT STATUS\n"
      ".TP\n.B 0\nDone.\n"
      ".TP\n.B 1\nThe operation reported an error, did nothing or can never complete; or the "
      "output could not be written.\n"
      ".TP\n.B 2\nUsage, or a store or a server that cannot be used. Nothing was changed.\n"
      ".SH ENVIRONMENT\n"
      ".TP\n.B XDG_DATA_HOME\nWhere the folder of the store is, in place of ~/.local/share.\n"
      ".TP\n.B COLUMNS\nHow wide the lines are.\n"
      ".TP\n.B NO_COLOR\nWhen set, no colours are used.\n";
  return text;
}

std::string completion(const CLI::App& app) {
  std::string calls;
  std::string words;
  visitAll(app, "paylevenkit", [&](const CLI::App& command, const std::string& call) {
    if (&command != &app) calls += (calls.empty() ? "\"" : " | \"") + call + "\"";
    words += "    \"" + call + "\") words=\"";
    for (const auto* inner : commandsOf(command)) words += inner->get_name() + " ";
    for (const auto* option : command.get_options()) {
      if (option->nonpositional()) words += "--" + option->get_lnames().front() + " ";
    }
    if (&command != &app) words += "$everywhere";
    words += "\" ;;\n";
  });
  std::string everywhere;
  for (const auto* option : app.get_options()) {
    everywhere += "--" + option->get_lnames().front() + " ";
  }
  return "# Completion for paylevenkit: for bash, and for zsh after bashcompinit.\n"
         "_paylevenkit() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} call=paylevenkit word words\n"
         "  local everywhere=\"" +
         everywhere +
         "\"\n"
         "  case ${COMP_WORDS[COMP_CWORD - 1]} in\n"
         "    --store | --ports-file)\n"
         "      local IFS=$'\\n'\n"
         "      COMPREPLY=($(compgen -f -- \"$current\"))\n"
         "      return ;;\n"
         "  esac\n"
         "  for word in \"${COMP_WORDS[@]:1:$((COMP_CWORD - 1))}\"; do\n"
         "    case \"$call $word\" in\n"
         "      " +
         calls +
         ") call=\"$call $word\" ;;\n"
         "    esac\n"
         "  done\n"
         "  case $call in\n" +
         words +
         "  esac\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
         "}\n"
         "complete -F _paylevenkit paylevenkit\n";
}

void define(CommandLine& line, const std::string& name, const std::string& description,
            const std::string& example, std::string (*textOf)(const CLI::App&)) {
  auto& command = CommandLine::add(line.app(), name, description, "  " + example + "\n");
  line.whenChosenWithoutStore(
      command, [&app = line.app(), name, textOf](const GlobalOptions&, const Printer&) {
        Report report;
        report.operation = name;
        report.listing = [text = textOf(app)](const Terminal&) { return text; };
        report.details["text"] = textOf(app);
        return report;
      });
}

}  // namespace

void defineDocumentCommands(CommandLine& line) {
  define(line, "completion", "Print what lets bash complete this command",
         "paylevenkit completion > ~/.local/share/bash-completion/completions/paylevenkit",
         completion);
  define(line, "manual", "Print the manual page", "paylevenkit manual | man -l -", manualPage);
}

}  // namespace hlv::sandbox::tool
