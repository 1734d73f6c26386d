#pragma once

#include <streambuf>

namespace support {

/// Sends `std::cout` to the journal for as long as it lives.
class CapturedOutput : private std::streambuf {
 public:
  CapturedOutput();
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;
  ~CapturedOutput() override;

 private:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override;

  std::streambuf* m_former;
};

}  // namespace support
