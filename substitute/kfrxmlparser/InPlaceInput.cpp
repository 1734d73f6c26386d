#include "substitute/kfrxmlparser/InPlaceInput.h"

#include <cstdlib>
#include <vector>

namespace kfrxmlparser {
namespace {

/// Expat counts buffers in ints, and doubles them.
constexpr std::size_t kLargest = std::size_t{1} << 29;

}  // namespace

thread_local InPlaceInput* InPlaceInput::t_innermost = nullptr;

InPlaceInput::InPlaceInput(char* text, std::size_t size)
    : m_outer(t_innermost), m_text(text), m_size(size) {
  t_innermost = this;
}

InPlaceInput::~InPlaceInput() { t_innermost = m_outer; }

const XML_Memory_Handling_Suite& InPlaceInput::memory() {
  static const XML_Memory_Handling_Suite suite{allocate, reallocate, release};
  return suite;
}

/// Tries it on a block that is as large as Expat asks for: an Expat that keeps notes of its own in
/// front of a block, or writes to it, must not be given a document.
bool InPlaceInput::isSafe() {
  constexpr std::size_t kDocumentSize = 1000;
  std::vector<char> block(16 * kDocumentSize, 'x');
  const std::vector<char> before = block;
  InPlaceInput probe(block.data(), kDocumentSize);
  XML_Parser parser = XML_ParserCreate_MM(nullptr, &memory(), nullptr);
  if (parser == nullptr) return false;
  const bool isLent = probe.makeBufferOf(parser);
  XML_ParserFree(parser);
  return isLent && !probe.m_isLent && block == before;
}

bool InPlaceInput::lendTo(XML_Parser parser) {
  static const bool kIsSafe = isSafe();
  return kIsSafe && m_size <= kLargest && makeBufferOf(parser);
}

bool InPlaceInput::makeBufferOf(XML_Parser parser) {
  m_isAwaited = true;
  const void* buffer = XML_GetBuffer(parser, static_cast<int>(m_size));
  m_isAwaited = false;
  return buffer == m_text;
}

void* InPlaceInput::allocate(std::size_t size) {
  InPlaceInput* const input = t_innermost;
  if (input != nullptr && input->m_isAwaited && size >= input->m_size) {
    input->m_isAwaited = false;
    input->m_isLent = true;
    return input->m_text;
  }
  return std::malloc(size);
}

void* InPlaceInput::reallocate(void* block, std::size_t size) { return std::realloc(block, size); }

void InPlaceInput::release(void* block) {
  for (InPlaceInput* input = t_innermost; input != nullptr; input = input->m_outer) {
    if (input->m_isLent && block == input->m_text) {
      input->m_isLent = false;
      return;
    }
  }
  std::free(block);
}

}  // namespace kfrxmlparser
