#include "host/Output.h"

#include <iostream>
#include <stdexcept>

#include "text/SafeText.h"

namespace host {
namespace {

const std::string kMargin = "  ";

}  // namespace

void printLine(const std::string& line) { std::cout << text::visible(line) << '\n'; }

void printApart(const std::string& text) {
  std::cout << kMargin << text::setApart(text, kMargin) << '\n';
}

void printField(const std::string& name, const std::string& value) {
  std::cout << text::visible(name) << " : " << text::setApart(value, kMargin) << '\n';
}

void flushOutput() {
  std::cout.flush();
  if (!std::cout) throw std::runtime_error(kNoOutput);
}

}  // namespace host
