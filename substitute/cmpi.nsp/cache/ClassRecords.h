#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
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

/// Builds classes from `records`, which outlive this and may hold anything: what makes no sense, or
/// would grow beyond every real class, throws `CacheDamage`. What several classes have in common is
/// read once and theirs together. One thread at a time.
class ClassRecordReader {
 public:
  explicit ClassRecordReader(std::string_view records);
  ClassRecordReader(const ClassRecordReader&) = delete;
  ClassRecordReader& operator=(const ClassRecordReader&) = delete;
  ~ClassRecordReader();

  /// The class whose record is at `place`.
  vorcore::ClassDeclarationPtr read(std::uint32_t place);

 private:
  class Impl;
  std::unique_ptr<Impl> m_impl;
};

/// One of them alone.
vorcore::ClassDeclarationPtr readClassRecord(std::string_view records, std::uint32_t place);

}  // namespace cmpinsp
