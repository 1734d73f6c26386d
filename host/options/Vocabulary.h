#pragma once

#include <string>
#include <vector>

namespace host {

/// What a command line can be made of, for those who complete one.

/// A value's kind is the word that the help shows for it: FILE, DIR, TEST ... Empty: there is none.
struct OptionWords {
  std::vector<std::string> names;  ///< with their dashes
  std::string description;
  std::string kind;
  int values = 0;        ///< how many follow it
  bool repeats = false;  ///< it can be given more than once
};

struct VerbWords {
  std::string name;
  std::string description;
  std::vector<OptionWords> options;
  std::string kind;  ///< of the words behind the verb
  bool repeats = false;
};

struct Vocabulary {
  std::vector<OptionWords> options;  ///< of every verb
  std::vector<VerbWords> verbs;      ///< without the hidden ones
};

/// That of the command's own grammar.
Vocabulary commandVocabulary();

/// Words of the kinds that have a few.
std::vector<std::string> levelNames();
std::vector<std::string> shellNames();
std::vector<std::string> shippedPlans();

}  // namespace host
