#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "substitute/cmpi.nsp/cache/ByteWriter.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

/// Writes class declarations as records that refer to each other by their place. What is the same
/// in several classes, as inherited features and their texts are, is written once.
class ClassRecordWriter {
 public:
  /// The place of the class's record; the class outlives the writer. Throws `TVORException` (not
  /// supported) for values that cannot be written, or when the records become too long for their
  /// places.
  std::uint32_t write(const vorcore::ClassDeclaration& declaration);

  const std::string& bytes() const noexcept { return m_bytes; }

 private:
  std::uint32_t place(const std::string& record);
  std::uint32_t qualifiers(const std::vector<vorcore::Qualifier>& qualifiers);
  std::uint32_t property(const vorcore::PropertyDeclaration& property);
  std::uint32_t parameter(const vorcore::ParameterDeclaration& parameter);
  std::uint32_t method(const vorcore::MethodDeclaration& method);

  template <typename Item>
  void chunks(ByteWriter& to, const vorcore::NamedList<Item>& items,
              std::uint32_t (ClassRecordWriter::*writeItem)(const Item&));

  std::string m_bytes;
  std::unordered_map<const void*, std::uint32_t> m_chunks;  ///< by the chunk, which its class keeps
  std::unordered_map<std::string, std::uint32_t> m_places;  ///< by the record's bytes
};

/// Builds the class whose record is at `place` of `records`, which may hold anything: what makes no
/// sense, or would grow beyond every real class, throws `CacheDamage`.
vorcore::ClassDeclarationPtr readClassRecord(std::string_view records, std::uint32_t place);

}  // namespace cmpinsp
