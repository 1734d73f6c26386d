#include "host/options/Completion.h"

namespace host {
namespace {

/// How a line is read, and how words get into it. Bash and readline split lines at colons, too, and
/// tests have them, so that the script reads the line itself; readline's own word only tells what
/// of it is to be replaced.
const char* const kBashWords =
    R"sh(# Completion of diags for bash, as "diags completion bash" writes it.

# The words of a line, without carrying out anything in them. raw is the last one as it stands there,
# quote the quotation mark that is open at its end.
_diags_split() {
  local text=$1 char next word= inside= i
  words=() raw= quote=
  for ((i = 0; i < ${#text}; i++)); do
    char=${text:i:1}
    if [[ $char == \\ && $quote != \' ]]; then
      i=$((i + 1)) inside=1
      next=${text:i:1}
      raw+=$char$next
      [[ $quote == \" && $next != [\"\\\$\`] ]] && word+=$char
      word+=$next
    elif [[ -n $quote ]]; then
      raw+=$char
      if [[ $char == "$quote" ]]; then quote=; else word+=$char; fi
    elif [[ $char == [\"\'] ]]; then
      raw+=$char quote=$char inside=1
    elif [[ $char == [[:space:]] ]]; then
      [[ -n $inside ]] && words+=("$word")
      word= raw= inside=
    else
      word+=$char raw+=$char inside=1
    fi
  done
  words+=("$word")
}

# Into quoted: a text that the shell takes as it stands, behind the quotation mark that is open.
_diags_quote() {
  local char
  quoted=$1
  case $quote in
    \') quoted=${quoted//"'"/"'\\''"} ;;
    \")
      for char in \\ \" \$ \`; do quoted=${quoted//"$char"/"\\$char"}; done
      quoted=${quoted//"!"/"\"'!'\""}
      ;;
    *)
      for char in \\ ' ' $'\t' \' \" \` \$ \& \| \; \< \> \( \) \* \? \[ \] \{ \} \! \# \~ \^ = :; do
        quoted=${quoted//"$char"/"\\$char"}
      done
      ;;
  esac
}

# Offers those words that begin as the current one does.
_diags_offer() {
  local word quoted
  for word in "$@"; do
    word=$lead$word
    [[ $word == "$current"* && $word == "$kept"* ]] || continue
    _diags_quote "${word#"$kept"}"
    # Readline drops one of two quotation marks that meet where it begins to replace.
    [[ -n $quote && $typed == *"$quote" && $quoted == "$quote"* ]] && quoted=$quote$quoted
    COMPREPLY+=("$quoted")
  done
}

# A name that would be taken for an option is none to offer.
_diags_offer_tests() {
  local name
  local -a names where=()
  [[ -n $root ]] && where=(--root "$root")
  mapfile -t names < <(timeout -k 1 2 "$program" "${where[@]}" list </dev/null 2>/dev/null)
  for name in "${names[@]}"; do
    [[ -z $name || $name == -* ]] || _diags_offer "$name"
  done
}

_diags_offer_plans() {
  local -a files
  _diags_offer "$@"
  mapfile -t files < <(compgen -f -X '!*.toml' -- "${current#"$lead"}"; compgen -d -- "${current#"$lead"}")
  COMPREPLY+=("${files[@]}")
  compopt -o filenames 2>/dev/null
}

)sh";

/// What is wanted at the cursor.
const char* const kBashCommand = R"sh(
# Reads the words in front of the current one: into verb and root, and into kind and count how many
# values of which kind the last option still has to get.
_diags_read() {
  local word option= ended=
  for word in "$@"; do
    if ((count > 0)); then
      [[ $option == --root ]] && root=$word
      count=$((count - 1))
    elif [[ -n $ended ]]; then
      :
    elif [[ $word == -- ]]; then
      ended=1
    elif [[ $word == --root=* ]]; then
      root=${word#*=}
    elif [[ $word == --*=* ]]; then
      :
    elif [[ $word == -* ]]; then
      option=$word
      _diags_option "$verb" "$option"
    elif [[ -z $verb ]]; then
      verb=$word
    fi
  done
  ((count > 0)) && return
  if [[ -n $ended ]]; then
    _diags_verb "$verb"
  elif [[ $current == --*=* ]]; then
    lead=${current%%=*}=
    _diags_option "$verb" "${current%%=*}"
  elif [[ $current == -* ]]; then
    kind=OPTION
  elif [[ -z $verb ]]; then
    kind=VERB
  else
    _diags_verb "$verb"
  fi
}

# $2 is what readline is going to replace: the end of the current word.
_diags() {
  local raw quote current kept typed program root= verb= kind= lead= count=0
  local -a words
  COMPREPLY=()
  _diags_split "${COMP_LINE:0:COMP_POINT}"
  ((${#words[@]} > 1)) || return 0
  [[ $raw == *"$2" ]] || return 0
  typed=${raw%"$2"} program=${words[0]} current=${words[-1]}
  _diags_read "${words[@]:1:${#words[@]}-2}"
  _diags_split "$typed"
  kept=${words[-1]}
  [[ $program == "~/"* ]] && program=$HOME${program#"~"}
  [[ $root == "~/"* ]] && root=$HOME${root#"~"}
  _diags_complete
  return 0
}
complete -F _diags diags
)sh";

/// A line of a case: the pattern, and the commands.
std::string caseLine(const std::string& pattern, const std::string& commands) {
  return "    " + pattern + ") " + commands + " ;;\n";
}

std::string namesOf(const std::vector<OptionWords>& options) {
  std::string text;
  for (const OptionWords& option : options) {
    text += (text.empty() ? "" : " ") + joinedWords(option.names);
  }
  return text;
}

std::string valueLines(const std::string& verb, const std::vector<OptionWords>& options) {
  std::string text;
  for (const OptionWords& option : options) {
    if (option.values == 0) continue;
    std::string pattern;
    for (const std::string& name : option.names) {
      pattern += (pattern.empty() ? "" : "|") + verb + name;
    }
    text += caseLine(pattern, "kind='" + option.kind + "' count=" + std::to_string(option.values));
  }
  return text;
}

/// The kinds and numbers of options' values.
std::string optionFunction(const Vocabulary& vocabulary) {
  std::string text = "_diags_option() {\n  kind= count=0\n  case $1,$2 in\n";
  for (const VerbWords& verb : vocabulary.verbs) text += valueLines(verb.name + ",", verb.options);
  return text + valueLines("*,", vocabulary.options) + "  esac\n}\n\n";
}

/// What stands behind a verb; options, where nothing else does.
std::string verbFunction(const Vocabulary& vocabulary) {
  std::string text = "_diags_verb() {\n  kind=OPTION\n  case $1 in\n";
  for (const VerbWords& verb : vocabulary.verbs) {
    if (!verb.kind.empty()) text += caseLine(verb.name, "kind=" + verb.kind);
  }
  return text + caseLine("completion", "kind=SHELL") + "  esac\n}\n\n";
}

std::string offerOptionsFunction(const Vocabulary& vocabulary) {
  std::string text = "_diags_offer_options() {\n  case $verb in\n";
  for (const VerbWords& verb : vocabulary.verbs) {
    text += caseLine(verb.name, "_diags_offer " + namesOf(verb.options));
  }
  return text + "  esac\n  _diags_offer " + namesOf(vocabulary.options) + "\n}\n\n";
}

std::string completeFunction(const Vocabulary& vocabulary) {
  std::vector<std::string> verbs;
  for (const VerbWords& verb : vocabulary.verbs) verbs.push_back(verb.name);
  const std::string offer = "_diags_offer ";
  return "_diags_complete() {\n  case $kind in\n" +  //
         caseLine("VERB", offer + joinedWords(verbs)) +
         caseLine("OPTION", "_diags_offer_options") +  //
         caseLine("TEST", "_diags_offer_tests") +
         caseLine("PLAN", "_diags_offer_plans " + joinedWords(shippedPlans())) +
         caseLine("LEVEL", offer + joinedWords(levelNames())) +
         caseLine("SHELL", offer + joinedWords(shellNames())) +
         caseLine("RUN", offer + "last last-1") +
         caseLine("FILE", "compopt -o default 2>/dev/null") +
         caseLine("DIR", "compopt -o dirnames 2>/dev/null") + "  esac\n}\n";
}

}  // namespace

std::string bashCompletion(const Vocabulary& vocabulary) {
  return kBashWords + optionFunction(vocabulary) + verbFunction(vocabulary) +
         offerOptionsFunction(vocabulary) + completeFunction(vocabulary) + kBashCommand;
}

}  // namespace host
