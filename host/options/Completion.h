#pragma once

#include <string>

#include "host/options/Vocabulary.h"

namespace host {

/// The script that has a shell complete command lines of `diags`, for one of shellNames().
std::string completionScript(const std::string& shell);

/// For each shell. None of them carries out what a test's name, a file's or the line itself holds.
std::string bashCompletion(const Vocabulary& vocabulary);
std::string zshCompletion(const Vocabulary& vocabulary);

/// Words with blanks between them.
std::string joinedWords(const std::vector<std::string>& words);

}  // namespace host
