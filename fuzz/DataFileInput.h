#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

/// What a new parser makes of the fuzzer's bytes, handed over the way the runner does: in a buffer
/// of just their size with one zero byte behind it, so that the address sanitizer sees every read
/// beyond. `result` takes the parser's answer out of it.
template <typename Parser, typename Result>
auto parsed(const std::uint8_t* data, std::size_t size, Result result) {
  const std::unique_ptr<char[]> buffer(new char[size + 1]());
  if (size != 0) {
    std::memcpy(buffer.get(), data, size);
  }
  Parser parser;
  parser.Parse(buffer.get());
  return result(parser);
}
