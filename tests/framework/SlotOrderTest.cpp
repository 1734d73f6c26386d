#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "framework/ICIMNamespace.h"
#include "framework/ILogger.h"
#include "framework/TXmlParser.h"

/// The order of the virtual operations is part of the binary interface: a library that was built
/// against it calls by position.
namespace NZELVOR20 {
namespace {

#if defined(__x86_64__)

/// The position of a virtual operation in its table, counted from 0. A pointer to one holds its
/// offset plus 1 (Itanium C++ ABI, 2.3).
template <typename Member>
std::size_t slotOf(Member member) {
  std::ptrdiff_t words[2] = {};
  static_assert(sizeof(member) == sizeof(words), "a pointer to a member has two words");
  std::memcpy(words, &member, sizeof(words));
  return static_cast<std::size_t>(words[0] - 1) / sizeof(void*);
}

/// A destructor takes two places.
constexpr std::size_t kFirstSlot = 2;

TEST(TheSlots, OfANamespaceFollowItsDestructorInTheirOrder) {
  using N = ICIMNamespace;
  const std::vector<std::size_t> slots = {slotOf(&N::GetNamespaceProvider),
                                          slotOf(&N::SetUpcallNamespace),
                                          slotOf(&N::AddUnderlyingNamespace),
                                          slotOf(&N::AllocateClass),
                                          slotOf(&N::GetClass),
                                          slotOf(&N::EnumerateRootClasses),
                                          slotOf(&N::EnumerateProviders),
                                          slotOf(&N::AllocateQualifierDecl),
                                          slotOf(&N::GetQualifierDecl),
                                          slotOf(&N::EnumerateQualifierDecls),
                                          slotOf(&N::Subscribe),
                                          slotOf(&N::GetInstance),
                                          slotOf(&N::DeleteInstance),
                                          slotOf(&N::ModifyInstance),
                                          slotOf(&N::ExecuteQuery),
                                          slotOf(&N::ClearInstances),
                                          slotOf(&N::operator=)};
  for (std::size_t i = 0; i < slots.size(); ++i) {
    EXPECT_EQ(slots[i], kFirstSlot + i) << "operation " << i;
  }
}

TEST(TheSlots, OfALoggerBeginWithTheLine) { EXPECT_EQ(slotOf(&ILogger::Log), kFirstSlot); }

/// Reaches the protected operations of the XML parser.
class ParserSlots : public TXmlParser {
 public:
  static std::vector<std::size_t> all() {
    using P = ParserSlots;
    return {slotOf(&P::StartElement),  slotOf(&P::EndElement),    slotOf(&P::ProcessingInstruction),
            slotOf(&P::CharacterData), slotOf(&P::Comment),       slotOf(&P::Error),
            slotOf(&P::ParseJSSP),     slotOf(&P::ParseCharData), slotOf(&P::GetAttributeNValue)};
  }
};

TEST(TheSlots, OfTheXmlParserFollowItsDestructorInTheirOrder) {
  const std::vector<std::size_t> slots = ParserSlots::all();
  for (std::size_t i = 0; i < slots.size(); ++i) {
    EXPECT_EQ(slots[i], kFirstSlot + i) << "operation " << i;
  }
}

#endif

}  // namespace
}  // namespace NZELVOR20
