#pragma once

#include <string>
#include <vector>

namespace engine::tasks {

/// What came out of a provider as an exception: a caller may take that for an answer, and the tests
/// or the record that it kept back for things that are not there.
struct Thrown {
  std::string provider;
  std::string text;  ///< of which function, and the exception's own text
};

/// Notes one, once; a provider that does it again and again is noted a few times only.
void noteThrown(const char* provider, const char* text) noexcept;

/// Those that were noted until now.
std::vector<Thrown> allThrown();

}  // namespace engine::tasks
