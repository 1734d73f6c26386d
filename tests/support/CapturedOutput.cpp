#include "tests/support/CapturedOutput.h"

#include <cstddef>
#include <iostream>

#include "tests/support/Journal.h"

namespace support {

CapturedOutput::CapturedOutput() : m_former(std::cout.rdbuf(this)) {}

CapturedOutput::~CapturedOutput() { std::cout.rdbuf(m_former); }

CapturedOutput::int_type CapturedOutput::overflow(int_type character) {
  if (!traits_type::eq_int_type(character, traits_type::eof())) {
    const char text = traits_type::to_char_type(character);
    Journal::current().write(&text, 1);
  }
  return traits_type::not_eof(character);
}

std::streamsize CapturedOutput::xsputn(const char* text, std::streamsize length) {
  Journal::current().write(text, static_cast<std::size_t>(length));
  return length;
}

int CapturedOutput::sync() {
  Journal::current().flush();
  return 0;
}

}  // namespace support
