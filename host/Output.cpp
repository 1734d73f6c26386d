#include "host/Output.h"

#include <iostream>
#include <stdexcept>

#include "host/SafeText.h"

namespace host {
namespace {

const std::string kMargin = "  ";

}  // namespace

void printLine(const std::string& line) { std::cout << visible(line) << '\n'; }

void printApart(const std::string& text) {
  std::cout << kMargin << setApart(text, kMargin) << '\n';
}

void printField(const std::string& name, const std::string& value) {
  std::cout << visible(name) << " : " << setApart(value, kMargin) << '\n';
}

void flushOutput() {
  std::cout.flush();
  if (!std::cout) throw std::runtime_error("standard output cannot be written");
}

}  // namespace host
