#include "host/Output.h"

#include <iostream>
#include <stdexcept>

#include "substitute/vorcore/values/SafeText.h"

namespace host {
namespace {

const std::string kMargin = "  ";

}  // namespace

void printLine(const std::string& line) { std::cout << vorcore::visible(line) << '\n'; }

void printApart(const std::string& text) {
  std::cout << kMargin << vorcore::setApart(text, kMargin) << '\n';
}

void printField(const std::string& name, const std::string& value) {
  std::cout << vorcore::visible(name) << " : " << vorcore::setApart(value, kMargin) << '\n';
}

void flushOutput() {
  std::cout.flush();
  if (!std::cout) throw std::runtime_error("standard output cannot be written");
}

}  // namespace host
