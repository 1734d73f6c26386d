#pragma once

#include <cstddef>

namespace cmpinsp {

/// How many answers one call may deliver: a provider that never stops is stopped there, with an
/// error. 10 million unless somebody sets another limit; 0 sets that one again. Safe to use from
/// several threads.
std::size_t answerLimit() noexcept;
void setAnswerLimit(std::size_t limit) noexcept;

}  // namespace cmpinsp
