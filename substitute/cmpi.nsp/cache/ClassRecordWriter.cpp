#include <limits>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/cache/ClassRecords.h"
#include "substitute/cmpi.nsp/cache/CodedValue.h"

namespace cmpinsp {

namespace {

template <typename Items, typename Write>
void writeList(ByteWriter& to, const Items& items, Write write) {
  to.count(items.size());
  for (const auto& item : items) to.u32(write(item));
}

}  // namespace

std::uint32_t ClassRecordWriter::place(const std::string& record) {
  if (m_bytes.size() > std::numeric_limits<std::uint32_t>::max() - record.size()) {
    throw NZELVOR20::TVORException(
        NZELVOR20::TVORStatusCode(NZELVOR20::eVORNotSupported, "too large a schema"));
  }
  const auto next = static_cast<std::uint32_t>(m_bytes.size());
  const auto inserted = m_places.emplace(record, next);
  if (inserted.second) m_bytes += record;
  return inserted.first->second;
}

std::uint32_t ClassRecordWriter::qualifiers(const std::vector<vorcore::Qualifier>& qualifiers) {
  ByteWriter record;
  writeList(record, qualifiers, [&](const vorcore::Qualifier& qualifier) {
    ByteWriter one;
    one.text(qualifier.name);
    writeValue(one, qualifier.value);
    return place(one.bytes());
  });
  return place(record.bytes());
}

std::uint32_t ClassRecordWriter::property(const vorcore::PropertyDeclaration& property) {
  ByteWriter record;
  record.text(property.name);
  writeType(record, property.type);
  record.flags({property.isArray, property.isKey});
  record.text(property.referenceClass);
  record.text(property.originClass);
  writeValue(record, property.defaultValue);
  record.u32(qualifiers(property.qualifiers));
  return place(record.bytes());
}

std::uint32_t ClassRecordWriter::parameter(const vorcore::ParameterDeclaration& parameter) {
  ByteWriter record;
  record.text(parameter.name);
  writeType(record, parameter.type);
  record.flags({parameter.isArray, parameter.isIn, parameter.isOut});
  record.text(parameter.referenceClass);
  record.u32(qualifiers(parameter.qualifiers));
  return place(record.bytes());
}

std::uint32_t ClassRecordWriter::method(const vorcore::MethodDeclaration& method) {
  ByteWriter record;
  record.text(method.name);
  writeType(record, method.returnType);
  record.text(method.originClass);
  record.u32(qualifiers(method.qualifiers));
  writeList(record, method.parameters, [&](const auto& each) { return parameter(each); });
  return place(record.bytes());
}

template <typename Item>
void ClassRecordWriter::chunks(ByteWriter& to, const vorcore::NamedList<Item>& items,
                               std::uint32_t (ClassRecordWriter::*writeItem)(const Item&)) {
  writeList(to, items.chunks(), [&](const auto& chunk) {
    const auto [known, isNew] = m_chunks.emplace(chunk.get(), 0);
    if (!isNew) return known->second;
    ByteWriter record;
    writeList(record, *chunk, [&](const auto& each) { return (this->*writeItem)(*each); });
    // Items are no chunks, so that nothing came between.
    return known->second = place(record.bytes());
  });
}

std::uint32_t ClassRecordWriter::write(const vorcore::ClassDeclaration& declaration) {
  ByteWriter record;
  record.text(declaration.name);
  record.text(declaration.superclass);
  record.flags({declaration.isAssociation, declaration.isAbstract, declaration.isOpen});
  record.u32(qualifiers(declaration.qualifiers));
  chunks(record, declaration.properties, &ClassRecordWriter::property);
  chunks(record, declaration.methods, &ClassRecordWriter::method);
  return place(record.bytes());
}

}  // namespace cmpinsp
