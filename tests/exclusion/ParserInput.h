#pragma once

#include <string>
#include <vector>

namespace support {

/// A document in a buffer of exactly its bytes and a zero byte, so that a sanitizer sees every step
/// beyond them.
class ParserInput {
 public:
  explicit ParserInput(const std::string& document)
      : m_bytes(document.c_str(), document.c_str() + document.size() + 1) {
    m_bytes.shrink_to_fit();
  }
  char* data() { return m_bytes.data(); }

 private:
  std::vector<char> m_bytes;
};

/// Entities that expand to ten to the power of nine letters, then `body`.
inline std::string withBillionLetters(const std::string& body) {
  std::string text = "<!DOCTYPE list [<!ENTITY e0 \"aaaaaaaaaa\">";
  for (int i = 1; i < 9; ++i) {
    text += "<!ENTITY e" + std::to_string(i) + " \"";
    for (int k = 0; k < 10; ++k) {
      text += "&e" + std::to_string(i - 1) + ";";
    }
    text += "\">";
  }
  return text + "]>" + body;
}

}  // namespace support
