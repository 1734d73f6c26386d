#include "host/Messages.h"

#include <iostream>
#include <string_view>

#include "text/SafeText.h"

namespace host {

void reportError(const std::string& text) {
  const std::size_t end = text.find_last_not_of(" \t\r\n") + 1;
  const std::string line = "diags: " + text::visible(std::string_view(text).substr(0, end)) + "\n";
  std::cout.flush();
  std::cerr << line << std::flush;
}

}  // namespace host
