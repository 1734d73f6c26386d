#pragma once

#include <string>

#include "host/options/Vocabulary.h"

namespace host {

/// What each command takes, with its examples, as sections of a manual page.
std::string manualSections(const Vocabulary& vocabulary);

}  // namespace host
