#include <algorithm>
#include <boost/make_shared.hpp>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "substitute/cmpi.nsp/cache/ByteReader.h"
#include "substitute/cmpi.nsp/cache/ClassRecords.h"
#include "substitute/cmpi.nsp/cache/CodedValue.h"

namespace cmpinsp {

namespace {

using vorcore::ClassDeclaration;
using vorcore::Qualifier;

/// How many bytes of records a class may be made of, where a record counts for no less than what it
/// takes in memory: so many, and so many times as there are in all. Records can be named any number
/// of times, so that a short file could ask for any amount of memory.
constexpr std::size_t kMostBytes = std::size_t{16} * 1024 * 1024;
constexpr std::size_t kMostTimes = 8;
constexpr std::size_t kLeastBytes = 64;
constexpr std::size_t kPlaceBytes = 4;

}  // namespace

class ClassRecordReader::Impl {
 public:
  explicit Impl(std::string_view records) : m_records(records) {}

  vorcore::ClassDeclarationPtr readClass(std::uint32_t place) {
    m_charged = 0;
    return record(place, [&](ByteReader& from) {
      const auto read = boost::make_shared<ClassDeclaration>();
      read->name = from.text();
      read->superclass = from.text();
      const unsigned flags = from.flags(3);
      read->isAssociation = (flags & 1U) != 0;
      read->isAbstract = (flags & 2U) != 0;
      read->isOpen = (flags & 4U) != 0;
      read->qualifiers = readQualifiers(from.u32());
      readChunks(from, read->properties, m_properties, &Impl::readProperty);
      readChunks(from, read->methods, m_methods, &Impl::readMethod);
      return vorcore::ClassDeclarationPtr(read);
    });
  }

 private:
  /// What `read` makes of the record at `place`.
  template <typename Read>
  std::invoke_result_t<Read, ByteReader&> record(std::uint32_t place, Read read) {
    if (place > m_records.size()) throw CacheDamage{"a record lies outside"};
    ByteReader from(m_records.substr(place));
    auto item = read(from);
    charge(std::max(kLeastBytes, m_records.size() - place - from.left()));
    return item;
  }

  void charge(std::size_t bytes) {
    m_charged += bytes;
    if (m_charged > kMostBytes + kMostTimes * m_records.size())
      throw CacheDamage{"a class is too large"};
  }

  /// A list of the places of records of one kind.
  template <typename Item>
  std::vector<Item> readList(ByteReader& from, Item (Impl::*read)(std::uint32_t)) {
    std::vector<Item> items;
    const std::size_t count = from.count(kPlaceBytes);
    for (std::size_t i = 0; i < count; ++i) items.push_back((this->*read)(from.u32()));
    return items;
  }

  template <typename Item>
  using ItemPtr = boost::shared_ptr<const Item>;
  template <typename Item>
  using Known = std::unordered_map<std::uint32_t, ItemPtr<Item>>;

  /// A feature that one class read before has too is the same one.
  template <typename Item>
  ItemPtr<Item> readShared(std::uint32_t place, Known<Item>& known,
                           Item (Impl::*read)(std::uint32_t)) {
    const auto found = known.find(place);
    if (found == known.end())
      return known.emplace(place, boost::make_shared<const Item>((this->*read)(place)))
          .first->second;
    charge(kLeastBytes);
    return found->second;
  }

  /// A list of the places of lists, which several classes may have in common.
  template <typename Item>
  void readChunks(ByteReader& from, vorcore::NamedList<Item>& items, Known<Item>& known,
                  Item (Impl::*read)(std::uint32_t)) {
    const std::size_t count = from.count(kPlaceBytes);
    for (std::size_t i = 0; i < count; ++i) {
      record(from.u32(), [&](ByteReader& chunk) {
        const std::size_t size = chunk.count(kPlaceBytes);
        for (std::size_t j = 0; j < size; ++j)
          items.push_back(readShared(chunk.u32(), known, read));
        return size;
      });
    }
  }

  Qualifier readQualifier(std::uint32_t place) {
    return record(place, [&](ByteReader& from) {
      Qualifier qualifier;
      qualifier.name = from.text();
      qualifier.value = readValue(from);
      return qualifier;
    });
  }

  std::vector<Qualifier> readQualifiers(std::uint32_t place) {
    return record(
        place, [&](ByteReader& from) { return readList<Qualifier>(from, &Impl::readQualifier); });
  }

  vorcore::PropertyDeclaration readProperty(std::uint32_t place) {
    return record(place, [&](ByteReader& from) {
      vorcore::PropertyDeclaration property;
      property.name = from.text();
      property.type = readDeclaredType(from);
      const unsigned flags = from.flags(2);
      property.isArray = (flags & 1U) != 0;
      property.isKey = (flags & 2U) != 0;
      property.referenceClass = from.text();
      property.originClass = from.text();
      property.defaultValue = readDefault(from, property.type, property.isArray);
      property.qualifiers = readQualifiers(from.u32());
      return property;
    });
  }

  vorcore::ParameterDeclaration readParameter(std::uint32_t place) {
    return record(place, [&](ByteReader& from) {
      vorcore::ParameterDeclaration parameter;
      parameter.name = from.text();
      parameter.type = readDeclaredType(from);
      const unsigned flags = from.flags(3);
      parameter.isArray = (flags & 1U) != 0;
      parameter.isIn = (flags & 2U) != 0;
      parameter.isOut = (flags & 4U) != 0;
      parameter.referenceClass = from.text();
      parameter.qualifiers = readQualifiers(from.u32());
      return parameter;
    });
  }

  vorcore::MethodDeclaration readMethod(std::uint32_t place) {
    return record(place, [&](ByteReader& from) {
      vorcore::MethodDeclaration method;
      method.name = from.text();
      method.returnType = readDeclaredType(from);
      method.originClass = from.text();
      method.qualifiers = readQualifiers(from.u32());
      method.parameters = readList<vorcore::ParameterDeclaration>(from, &Impl::readParameter);
      return method;
    });
  }

  std::string_view m_records;
  std::size_t m_charged = 0;
  Known<vorcore::PropertyDeclaration> m_properties;
  Known<vorcore::MethodDeclaration> m_methods;
};

ClassRecordReader::ClassRecordReader(std::string_view records)
    : m_impl(std::make_unique<Impl>(records)) {}
ClassRecordReader::~ClassRecordReader() = default;

vorcore::ClassDeclarationPtr ClassRecordReader::read(std::uint32_t place) {
  return m_impl->readClass(place);
}

vorcore::ClassDeclarationPtr readClassRecord(std::string_view records, std::uint32_t place) {
  return ClassRecordReader(records).read(place);
}

}  // namespace cmpinsp
