#include "host/Messages.h"

#include <exception>
#include <iostream>
#include <new>
#include <string_view>

#include "text/SafeText.h"

namespace host {

void reportError(const std::string& text) {
  const std::size_t end = text.find_last_not_of(" \t\r\n") + 1;
  const std::string line = "diags: " + text::visible(std::string_view(text).substr(0, end)) + "\n";
  std::cout.flush();
  std::cerr << line << std::flush;
}

std::string currentExceptionText() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return "out of memory";
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "an exception of an unknown kind";
  }
}

std::string trimmed(const std::string& text) {
  static const char* const kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace host
