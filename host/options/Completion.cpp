#include "host/options/Completion.h"

namespace host {

std::string joinedWords(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string completionScript(const std::string& shell) {
  const Vocabulary vocabulary = commandVocabulary();
  return shell == "zsh" ? zshCompletion(vocabulary) : bashCompletion(vocabulary);
}

}  // namespace host
