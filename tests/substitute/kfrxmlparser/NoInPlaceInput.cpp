// Takes the place of the library's own at link time: an Expat that cannot be lent a document.
#include <cstdlib>

#include "substitute/kfrxmlparser/InPlaceInput.h"

namespace kfrxmlparser {

InPlaceInput::InPlaceInput(char* text, std::size_t size)
    : m_outer(nullptr), m_text(text), m_size(size) {}

InPlaceInput::~InPlaceInput() = default;

const XML_Memory_Handling_Suite& InPlaceInput::memory() {
  static const XML_Memory_Handling_Suite suite{std::malloc, std::realloc, std::free};
  return suite;
}

bool InPlaceInput::lendTo(XML_Parser) { return false; }

}  // namespace kfrxmlparser
