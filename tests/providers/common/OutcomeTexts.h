#pragma once

#include <gtest/gtest.h>

#include <string>

#include "providers/common/Diagnostic.h"

namespace providers {

/// Whether the outcome's text, as a technician reads it, has this in it.
inline bool tells(const Outcome& outcome, const std::string& text) {
  return outcome.text.find(text) != std::string::npos;
}

/// The measured value of that name; the test fails where there is none.
inline double measuredIn(const Outcome& outcome, const std::string& name) {
  for (const Measured& one : outcome.measured)
    if (one.name == name) return one.value;
  ADD_FAILURE() << name << " was not measured";
  return -1;
}

}  // namespace providers
