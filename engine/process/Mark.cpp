#include <uv.h>

#include <array>
#include <stdexcept>

#include "engine/process/Marked.h"

namespace engine {

std::string newMark() {
  std::array<unsigned char, 16> bytes{};
  if (uv_random(nullptr, nullptr, bytes.data(), bytes.size(), 0, nullptr) != 0) {
    throw std::runtime_error("the system gives no random numbers");
  }
  static const char* const kDigits = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

}  // namespace engine
