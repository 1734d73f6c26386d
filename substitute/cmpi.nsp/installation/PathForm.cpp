#include "substitute/cmpi.nsp/installation/PathForm.h"

#include <system_error>

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

/// A library that knows such paths sees the machine as the root's name.
bool hasUnseenMachine(const fs::path& path) {
  constexpr auto kBackslash = static_cast<fs::path::value_type>('\\');
  const auto isSeparator = [](auto c) { return c == kBackslash || c == '/'; };
  const auto& text = path.native();
  return fs::path::preferred_separator == kBackslash && text.size() > 1 && isSeparator(text[0]) &&
         isSeparator(text[1]) && !path.has_root_name();
}

}  // namespace

bool losesItsMachine(const fs::path& path) {
  std::error_code ignored;
  return hasUnseenMachine(path) || hasUnseenMachine(fs::absolute(path, ignored));
}

std::string textOf(const fs::path& path) {
  try {
    return path.u8string();
  } catch (const std::system_error&) {
    return std::string();
  }
}

}  // namespace cmpinsp
