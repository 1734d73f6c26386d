#pragma once

#include <exception>
#include <string>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

namespace cmpinsp::broker {

/// How the broker's own code reports to a provider that something failed.
class Failure : public std::exception {
 public:
  Failure(CMPIrc code, std::string text) : m_code(code), m_text(std::move(text)) {}

  CMPIrc code() const noexcept { return m_code; }
  const char* what() const noexcept override { return m_text.c_str(); }

 private:
  CMPIrc m_code;
  std::string m_text;
};

}  // namespace cmpinsp::broker
