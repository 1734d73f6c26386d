#include <windows.h>

#include <array>
#include <filesystem>

#include "substitute/cmpi.nsp/installation/SystemMessage.h"

namespace cmpinsp {

std::string systemMessage(const std::error_code& error, unsigned short language) {
  if (error.category() != std::system_category()) return error.message();
  std::array<wchar_t, 1024> text{};
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
      nullptr, static_cast<DWORD>(error.value()), language, text.data(),
      static_cast<DWORD>(text.size()), nullptr);
  if (length == 0) return "error " + std::to_string(error.value());
  std::string message = std::filesystem::path(text.data(), text.data() + length).u8string();
  message.erase(message.find_last_not_of(' ') + 1);
  return message;
}

}  // namespace cmpinsp
