#include "host/Messages.h"

#include <algorithm>
#include <exception>
#include <iostream>

#include "framework/TVORException.h"

namespace host {

void reportError(const std::string& text) {
  std::string line = "diags: " + text;
  std::replace_if(
      line.begin(), line.end(),
      [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7f;
      },
      ' ');
  line.erase(line.find_last_not_of(' ') + 1);
  std::cout.flush();
  std::cerr << line + "\n" << std::flush;
}

std::string currentExceptionText() {
  try {
    throw;
  } catch (const NZELVOR20::TVORException& error) {
    return error.GetStatus().TranslateStatusCode();
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "an exception of an unknown kind";
  }
}

}  // namespace host
