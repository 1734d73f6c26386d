#include "host/Messages.h"

#include <exception>
#include <iostream>
#include <new>
#include <string_view>

#include "framework/TVORException.h"
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
  } catch (const NZELVOR20::TVORException& error) {
    return error.GetStatus().TranslateStatusCode();
  } catch (const std::bad_alloc&) {
    return "out of memory";
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "an exception of an unknown kind";
  }
}

}  // namespace host
