#include "host/options/Manual.h"

#include "host/options/Examples.h"

namespace host {
namespace {

/// As roff takes it literally, in a line of its own.
std::string literal(const std::string& text) {
  std::string result;
  if (!text.empty() && (text.front() == '.' || text.front() == '\'')) result = "\\&";
  for (const char letter : text) {
    if (letter == '\\') {
      result += "\\e";
    } else {
      result += letter == '-' ? "\\-" : std::string(1, letter);
    }
  }
  return result;
}

std::string bold(const std::string& text) { return "\\fB" + literal(text) + "\\fR"; }
std::string slanted(const std::string& text) { return "\\fI" + literal(text) + "\\fR"; }

std::string optionText(const OptionWords& option) {
  std::string names;
  for (const std::string& name : option.names) names += (names.empty() ? "" : ", ") + bold(name);
  for (int i = 0; i < option.values; ++i) names += " " + slanted(option.kind);
  return ".TP\n" + names + "\n" + literal(option.description) +
         (option.repeats ? "; more than once for several" : "") + "\n";
}

std::string optionsText(const std::vector<OptionWords>& options) {
  std::string text;
  for (const OptionWords& option : options) text += optionText(option);
  return text;
}

std::string examplesOf(const std::string& verb) {
  std::string text;
  for (const Example& example : examples()) {
    if (verb != example.verb) continue;
    text += literal(example.line) + "\n    # " + literal(example.purpose) + "\n";
  }
  return text.empty() ? text : ".PP\n.RS 4\n.EX\n" + text + ".EE\n.RE\n";
}

std::string verbText(const VerbWords& verb) {
  std::string text = ".SS \"diags " + literal(verb.name);
  if (!verb.kind.empty()) text += " " + literal(verb.kind) + (verb.repeats ? "..." : "");
  return text + "\"\n" + literal(verb.description) + ".\n" + optionsText(verb.options) +
         examplesOf(verb.name);
}

}  // namespace

std::string manualSections(const Vocabulary& vocabulary) {
  std::string text = ".SH \"EACH COMMAND\"\n";
  for (const VerbWords& verb : vocabulary.verbs) text += verbText(verb);
  return text + ".SS \"Every command\"\n" + optionsText(vocabulary.options);
}

}  // namespace host
