#pragma once

#include <expat.h>

#include <cstddef>

namespace kfrxmlparser {

/// Lets an Expat parser read a document where it lies.
///
/// Expat copies what it is handed, piece by piece, and counts the lines of each piece; both cost
/// more than a derived parser's own work. It does neither for a document that stands in its own
/// buffer as a whole. So the parser gets its memory through `memory()`, and the one request that is
/// meant for its buffer is answered with the document itself.
///
/// One object goes with one parser, on one thread, and outlives it; parsers may be nested.
class InPlaceInput {
 public:
  /// The document is not written to, and is not freed.
  InPlaceInput(char* text, std::size_t size);
  InPlaceInput(const InPlaceInput&) = delete;
  InPlaceInput& operator=(const InPlaceInput&) = delete;
  ~InPlaceInput();

  /// The memory functions for the parser.
  static const XML_Memory_Handling_Suite& memory();

  /// Makes the document the buffer of `parser`, which is new. False when it is too large for that,
  /// or this Expat does more with its buffer than it is known to do; then nothing has happened.
  bool lendTo(XML_Parser parser);

 private:
  static bool isSafe();
  bool makeBufferOf(XML_Parser parser);
  static void* allocate(std::size_t size);
  static void* reallocate(void* block, std::size_t size);
  static void release(void* block);

  static thread_local InPlaceInput* t_innermost;

  InPlaceInput* const m_outer;
  char* const m_text;
  const std::size_t m_size;
  bool m_isAwaited = false;  ///< the next request is for the buffer
  bool m_isLent = false;
};

}  // namespace kfrxmlparser
