#pragma once

#include <string>

#include "fleet/Answer.h"
#include "fleet/page/PageLimits.h"

/// Answers to make pages of.
namespace fleet::samples {

/// The page of an answer.
std::string pageOf(const Answer& answer, const PageLimits& limits = {});

/// Machines "node-00001" and so on with tests "Test 01" and so on, all of which passed.
Answer soundFleet(std::uint32_t machines, std::uint32_t tests);

/// Of forty machines three fail, one is cut off, one is silent and one has a slow disk; a model of
/// memory stands out, and a stream is left out.
Answer faultyFleet();

/// What a fleet of that size is like: one machine of 50 fails, one of 100 is cut off, one of 100
/// has a slow part.
Answer largeFleet(std::uint32_t machines, std::uint32_t tests);

/// Every text is `text`.
Answer answerOf(const std::string& text);

}  // namespace fleet::samples
