#include "host/options/Completion.h"

namespace host {
namespace {

/// The functions that find words. A name that would be taken for an option is none to offer.
const char* const kZshHead = R"sh(#compdef diags
# Completion of diags for zsh, as "diags completion zsh" writes it.

_diags_tests() {
  local -a tests
  tests=(${(f)"$(timeout -k 1 2 "${diags_command[@]}" list </dev/null 2>/dev/null)"})
  tests=(${tests:#-*})
  compadd -X test -a tests
}

)sh";

/// Which program is asked for tests, and of which installation.
const char* const kZshCommand = R"sh(_diags() {
  local curcontext=$curcontext state word root= i
  local -a line diags_command
  typeset -A opt_args
  for ((i = 2; i < CURRENT; i++)); do
    word=${(Q)words[i]}
    case $word in
      --root) root=${(Q)words[i+1]} ;;
      --root=*) root=${word#*=} ;;
      --) break ;;
    esac
  done
  [[ $root == "~/"* ]] && root=$HOME${root#"~"}
  word=${(Q)words[1]}
  [[ $word == "~/"* ]] && word=$HOME${word#"~"}
  diags_command=("$word")
  [[ -n $root ]] && diags_command+=(--root "$root")
)sh";

std::string replacedAll(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string singleQuoted(const std::string& text) {
  return "'" + replacedAll(text, "'", "'\\''") + "'";
}

/// A description between brackets.
std::string inBrackets(std::string text) {
  for (const char* const special : {"\\", "[", "]", ":"}) {
    text = replacedAll(std::move(text), special, std::string("\\") + special);
  }
  return "[" + text + "]";
}

/// What finds the words of a kind; a blank where nothing does.
std::string actionFor(const std::string& kind) {
  if (kind == "FILE") return "_files";
  if (kind == "DIR") return "_files -/";
  if (kind == "TEST") return "_diags_tests";
  if (kind == "PLAN") return "_diags_plans";
  if (kind == "LEVEL") return "(" + joinedWords(levelNames()) + ")";
  if (kind == "SHELL") return "(" + joinedWords(shellNames()) + ")";
  if (kind == "RUN") return "(last last-1)";
  return " ";
}

std::string argumentOf(const std::string& kind) { return ":" + kind + ":" + actionFor(kind); }

/// One word of _arguments for each name of the option.
std::string optionSpecs(const OptionWords& option, const std::string& indent) {
  std::string text;
  for (const std::string& name : option.names) {
    std::string spec = option.repeats ? "*" : "(" + joinedWords(option.names) + ")";
    spec += name + (option.values == 1 && name[1] == '-' ? "=" : "");
    spec += inBrackets(option.description);
    for (int i = 0; i < option.values; ++i) spec += argumentOf(option.kind);
    text += " \\\n" + indent + singleQuoted(spec);
  }
  return text;
}

std::string optionsSpecs(const std::vector<OptionWords>& options, const std::string& indent) {
  std::string text;
  for (const OptionWords& option : options) text += optionSpecs(option, indent);
  return text;
}

/// The verb's own options before those of every verb, which are said to the shell but once.
std::string verbCase(const VerbWords& verb, const std::vector<OptionWords>& common) {
  const std::string indent = "        ";
  std::string text =
      "    " + verb.name + ")\n      _arguments -S" + optionsSpecs(verb.options, indent);
  for (const OptionWords& option : common) {
    if (option.names.back() != "--help") text += optionSpecs(option, indent);
  }
  if (!verb.kind.empty()) {
    const std::string place = verb.repeats ? "*" : "1";
    text += " \\\n" + indent + singleQuoted(place + argumentOf(verb.kind));
  }
  return text + "\n      ;;\n";
}

std::string verbsFunction(const Vocabulary& vocabulary) {
  std::string text = "_diags_verbs() {\n  local -a verbs\n  verbs=(\n";
  for (const VerbWords& verb : vocabulary.verbs) {
    text += "    " + singleQuoted(verb.name + ":" + verb.description) + "\n";
  }
  return text + "  )\n  _describe command verbs\n}\n\n";
}

std::string plansFunction() {
  return "_diags_plans() {\n  _alternative 'plans:plan:(" + joinedWords(shippedPlans()) +
         ")' 'files:file:_files -g \"*.toml\"'\n}\n\n";
}

}  // namespace

std::string zshCompletion(const Vocabulary& vocabulary) {
  std::string text = kZshHead + verbsFunction(vocabulary) + plansFunction() + kZshCommand;
  text += "  _arguments -S -C" + optionsSpecs(vocabulary.options, "    ") +
          " \\\n    '(-): :_diags_verbs' '(-)*::argument:->arguments' && return\n";
  text += "  [[ $state == arguments ]] || return 1\n  case $words[1] in\n";
  for (const VerbWords& verb : vocabulary.verbs) text += verbCase(verb, vocabulary.options);
  text += verbCase({"completion", "", {}, "SHELL", false}, vocabulary.options);
  return text + "  esac\n}\n\n_diags \"$@\"\n";
}

}  // namespace host
