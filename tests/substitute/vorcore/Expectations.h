#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "framework/TCIMValue.h"
#include "framework/TVORException.h"

namespace vorcore {

/// The text of the `TVORException` that `action` throws; fails the test when it throws none.
template <typename Action>
std::string failureOf(Action action) {
  try {
    action();
  } catch (const NZELVOR20::TVORException& exception) {
    return exception.what();
  }
  ADD_FAILURE() << "nothing was thrown";
  return std::string();
}

/// The values of a string array.
inline NZELVOR20::TCIMValue texts(std::initializer_list<const char*> elements) {
  return NZELVOR20::TCIMValue::Array(NZELVOR20::ECIMType::eString,
                                     {elements.begin(), elements.end()});
}

}  // namespace vorcore
