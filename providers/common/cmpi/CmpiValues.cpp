#include "providers/common/cmpi/CmpiValues.h"

#include <type_traits>

#include "providers/common/model/DiagnosticProvider.h"

namespace providers {

namespace {

constexpr CMPIStatus kGood{CMPI_RC_OK, nullptr};

template <class T>
constexpr CMPIType typeCode() {
  if constexpr (std::is_same_v<T, bool>) return CMPI_boolean;
  if constexpr (std::is_same_v<T, std::uint8_t>) return CMPI_uint8;
  if constexpr (std::is_same_v<T, std::uint16_t>) return CMPI_uint16;
  if constexpr (std::is_same_v<T, std::uint32_t>) return CMPI_uint32;
  if constexpr (std::is_same_v<T, std::uint64_t>) return CMPI_uint64;
  if constexpr (std::is_same_v<T, std::int64_t>) return CMPI_sint64;
  if constexpr (std::is_same_v<T, std::string>) return CMPI_string;
  if constexpr (std::is_same_v<T, DateTime>) return CMPI_dateTime;
  if constexpr (std::is_same_v<T, PathPtr>) return CMPI_ref;
  if constexpr (std::is_same_v<T, InstancePtr>) return CMPI_instance;
  return CMPI_null;
}

/// A value in the broker's form. A text is given as CMPI_chars, where the address of the value is
/// the text itself.
struct BrokerValue {
  CMPIValue value{};
  CMPIType type = CMPI_null;
  const char* text = nullptr;

  const CMPIValue* pointer() const {
    if (type == CMPI_null) return nullptr;
    return type == CMPI_chars ? reinterpret_cast<const CMPIValue*>(text) : &value;
  }
};

class ToBroker {
 public:
  ToBroker(const CMPIBroker* broker, const CmpiValues& values)
      : m_broker(broker), m_values(values) {}

  BrokerValue operator()(std::monostate) const { return {}; }
  BrokerValue operator()(const std::string& text) const {
    BrokerValue result;
    result.type = CMPI_chars;
    result.text = text.c_str();
    return result;
  }
  BrokerValue operator()(const DateTime& time) const {
    CMPIStatus status = kGood;
    BrokerValue result;
    result.type = CMPI_dateTime;
    result.value.dateTime =
        m_broker->eft->newDateTimeFromBinary(m_broker, static_cast<CMPIUint64>(time.microseconds),
                                             time.interval ? CMPI_true : CMPI_false, &status);
    check(status, "making a date");
    return result;
  }
  BrokerValue operator()(const PathPtr& path) const {
    BrokerValue result;
    if (!path) return result;
    result.type = CMPI_ref;
    result.value.ref = m_values.makePath(*path);
    return result;
  }
  BrokerValue operator()(const InstancePtr& instance) const {
    BrokerValue result;
    if (!instance) return result;
    result.type = CMPI_instance;
    result.value.inst = m_values.makeInstance(*instance, nullptr);
    return result;
  }
  template <class T>
  BrokerValue operator()(const std::vector<T>& items) const {
    CMPIStatus status = kGood;
    BrokerValue result;
    result.type = static_cast<CMPIType>(typeCode<T>() | CMPI_ARRAY);
    CMPIArray* array = m_broker->eft->newArray(m_broker, static_cast<CMPICount>(items.size()),
                                               typeCode<T>(), &status);
    check(status, "making an array");
    for (std::size_t i = 0; i < items.size(); ++i) {
      const BrokerValue item = (*this)(items[i]);
      check(array->ft->setElementAt(array, static_cast<CMPICount>(i), item.pointer(), item.type),
            "filling an array");
    }
    result.value.array = array;
    return result;
  }
  template <class T>
  std::enable_if_t<std::is_integral_v<T>, BrokerValue> operator()(T number) const {
    BrokerValue result;
    result.type = typeCode<T>();
    if constexpr (std::is_same_v<T, bool>) result.value.boolean = number ? CMPI_true : CMPI_false;
    if constexpr (std::is_same_v<T, std::uint8_t>) result.value.uint8 = number;
    if constexpr (std::is_same_v<T, std::uint16_t>) result.value.uint16 = number;
    if constexpr (std::is_same_v<T, std::uint32_t>) result.value.uint32 = number;
    if constexpr (std::is_same_v<T, std::uint64_t>) result.value.uint64 = number;
    if constexpr (std::is_same_v<T, std::int64_t>) result.value.sint64 = number;
    return result;
  }

 private:
  const CMPIBroker* m_broker;
  const CmpiValues& m_values;
};

bool isListed(const Property& property, const char** names) {
  if (!names || property.key) return true;
  for (; *names; ++names)
    if (sameName(*names, property.name)) return true;
  return false;
}

template <class T, class Get>
std::vector<T> readItems(const CMPIArray* array, Get get) {
  std::vector<T> items;
  const CMPICount count = array->ft->getSize(array, nullptr);
  for (CMPICount i = 0; i < count; ++i)
    items.push_back(get(array->ft->getElementAt(array, i, nullptr)));
  return items;
}

}  // namespace

std::string textOf(const CMPIString* string) {
  const char* text = string ? string->ft->getCharPtr(string, nullptr) : nullptr;
  return text ? text : std::string();
}

void check(const CMPIStatus& status, const char* operation) {
  if (status.rc == CMPI_RC_OK) return;
  throw ProviderError(static_cast<int>(status.rc),
                      "the broker failed in " + std::string(operation) + ": " + textOf(status.msg));
}

CMPIObjectPath* CmpiValues::makePath(const ObjectPath& path) const {
  CMPIStatus status = kGood;
  CMPIObjectPath* made =
      m_broker->eft->newObjectPath(m_broker, m_nameSpace.c_str(), path.className.c_str(), &status);
  check(status, "making a path");
  for (const Property& key : path.keys.all()) {
    const BrokerValue value = std::visit(ToBroker(m_broker, *this), key.value);
    check(made->ft->addKey(made, key.name.c_str(), value.pointer(), value.type), "adding a key");
  }
  return made;
}

CMPIInstance* CmpiValues::makeInstance(const Instance& instance, const char** names) const {
  CMPIStatus status = kGood;
  CMPIInstance* made = m_broker->eft->newInstance(m_broker, makePath(instance.path()), &status);
  check(status, "making an instance");
  for (const Property& property : instance.properties.all()) {
    if (!isListed(property, names)) continue;
    const BrokerValue value = std::visit(ToBroker(m_broker, *this), property.value);
    if (value.type == CMPI_null) continue;
    check(made->ft->setProperty(made, property.name.c_str(), value.pointer(), value.type),
          "setting a property");
  }
  return made;
}

void CmpiValues::addArguments(CMPIArgs* args, const Properties& properties) const {
  for (const Property& property : properties.all()) {
    const BrokerValue value = std::visit(ToBroker(m_broker, *this), property.value);
    check(args->ft->addArg(args, property.name.c_str(), value.pointer(), value.type),
          "adding an argument");
  }
}

ObjectPath CmpiValues::readPath(const CMPIObjectPath* path) const {
  ObjectPath result{textOf(path->ft->getClassName(path, nullptr)), {}};
  const CMPICount count = path->ft->getKeyCount(path, nullptr);
  for (CMPICount i = 0; i < count; ++i) {
    CMPIString* name = nullptr;
    const CMPIData data = path->ft->getKeyAt(path, i, &name, nullptr);
    result.keys.setKey(textOf(name), read(data));
  }
  return result;
}

Instance CmpiValues::readInstance(const CMPIInstance* instance) const {
  Instance result;
  if (CMPIObjectPath* path = instance->ft->getObjectPath(instance, nullptr))
    result.className = textOf(path->ft->getClassName(path, nullptr));
  const CMPICount count = instance->ft->getPropertyCount(instance, nullptr);
  for (CMPICount i = 0; i < count; ++i) {
    CMPIString* name = nullptr;
    const CMPIData data = instance->ft->getPropertyAt(instance, i, &name, nullptr);
    result.properties.set(textOf(name), read(data));
  }
  return result;
}

Properties CmpiValues::readArguments(const CMPIArgs* args) const {
  Properties result;
  if (!args) return result;
  const CMPICount count = args->ft->getArgCount(args, nullptr);
  for (CMPICount i = 0; i < count; ++i) {
    CMPIString* name = nullptr;
    const CMPIData data = args->ft->getArgAt(args, i, &name, nullptr);
    result.set(textOf(name), read(data));
  }
  return result;
}

Value CmpiValues::read(const CMPIData& data) const {
  if (data.state & (CMPI_nullValue | CMPI_badValue | CMPI_notFound)) return {};
  if (data.type & CMPI_ARRAY) return readArray(data.value.array, data.type);
  switch (data.type) {
    case CMPI_boolean:
      return data.value.boolean != 0;
    case CMPI_uint8:
      return std::uint8_t{data.value.uint8};
    case CMPI_uint16:
      return std::uint16_t{data.value.uint16};
    case CMPI_uint32:
      return std::uint32_t{data.value.uint32};
    case CMPI_uint64:
      return static_cast<std::uint64_t>(data.value.uint64);
    case CMPI_sint8:
      return std::int64_t{data.value.sint8};
    case CMPI_sint16:
      return std::int64_t{data.value.sint16};
    case CMPI_sint32:
      return std::int64_t{data.value.sint32};
    case CMPI_sint64:
      return static_cast<std::int64_t>(data.value.sint64);
    case CMPI_string:
      return textOf(data.value.string);
    case CMPI_chars:
      return std::string(data.value.chars ? data.value.chars : "");
    case CMPI_dateTime: {
      const CMPIDateTime* time = data.value.dateTime;
      return DateTime{static_cast<std::int64_t>(time->ft->getBinaryFormat(time, nullptr)),
                      time->ft->isInterval(time, nullptr) != 0};
    }
    case CMPI_ref:
      return std::make_shared<const ObjectPath>(readPath(data.value.ref));
    case CMPI_instance:
      return std::make_shared<const Instance>(readInstance(data.value.inst));
    default:
      return {};
  }
}

Value CmpiValues::readArray(const CMPIArray* array, CMPIType type) const {
  if (!array) return {};
  switch (type & ~CMPI_ARRAY) {
    case CMPI_uint16:
      return readItems<std::uint16_t>(array,
                                      [](const CMPIData& data) { return data.value.uint16; });
    case CMPI_uint32:
      return readItems<std::uint32_t>(array,
                                      [](const CMPIData& data) { return data.value.uint32; });
    case CMPI_string:
      return readItems<std::string>(array,
                                    [](const CMPIData& data) { return textOf(data.value.string); });
    default:
      return {};
  }
}

}  // namespace providers
