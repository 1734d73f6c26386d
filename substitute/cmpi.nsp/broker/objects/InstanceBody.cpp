#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstring>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"
#include "substitute/cmpi.nsp/broker/objects/FittedValue.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"

namespace cmpinsp::broker {

using NZELVOR20::TCIMValue;
using vorcore::ClassDeclaration;
using vorcore::PropertyDeclaration;

namespace {

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& one) { return vorcore::equalNames(one, name); });
}

/// What is a key though its class does not say so: the class above it, which nobody declared, may.
bool isKeyOfPath(const InstanceData& data, const std::string& name) {
  return data.declaration->isOpen && data.path.findKey(name) != nullptr;
}

bool isHidden(const PropertyNames names, const InstanceData& data, std::size_t position) {
  const PropertyDeclaration& property = data.declaration->properties[position];
  return !property.isKey && !isKeyOfPath(data, property.name) && !data.values[position].IsNull() &&
         !contains(*names, property.name);
}

bool isHidden(const PropertyNames names, const InstanceData& data,
              const std::pair<std::string, TCIMValue>& extra) {
  return data.path.findKey(extra.first) == nullptr && !contains(*names, extra.first);
}

KnownPosition& knownPosition(ThreadState& thread, const char* name) {
  const auto address = reinterpret_cast<std::uintptr_t>(name);
  return thread.positions[(address ^ (address >> 6U)) % thread.positions.size()];
}

std::size_t declaredCount(const InstanceData& data) {
  return data.declaration ? std::min(data.values.size(), data.declaration->properties.size()) : 0;
}

}  // namespace

bool PropertyFilter::shows(const std::string& name) const { return contains(names, name); }

InstanceDataPtr filtered(const InstanceDataPtr& data, PropertyNames names) {
  if (names == nullptr) return data;
  InstanceDataPtr copy;
  const auto changed = [&]() -> InstanceData& {
    if (!copy) copy = boost::make_shared<InstanceData>(*data);
    return *copy;
  };
  for (std::size_t position = 0; position < declaredCount(*data); ++position) {
    if (!isHidden(names, *data, position)) continue;
    const PropertyDeclaration& property = data->declaration->properties[position];
    changed().values[position] = TCIMValue::Null(property.type, property.isArray);
  }
  const auto hidden = [&](const auto& extra) { return isHidden(names, *data, extra); };
  if (std::any_of(data->extras.begin(), data->extras.end(), hidden)) {
    auto& extras = changed().extras;
    extras.erase(std::remove_if(extras.begin(), extras.end(), hidden), extras.end());
  }
  return copy ? copy : data;
}

InstanceBody::InstanceBody(Broker& broker, const ObjectPath& path)
    : m_data(boost::make_shared<InstanceData>()) {
  m_data->path = path;
  if (const auto shape = broker.shapeOf(path.className)) {
    m_data->declaration = shape->declaration();
    m_data->values = shape->nulls();
  }
  if (!m_data->declaration || m_data->declaration->isOpen) {
    m_keyNames = broker.knownKeys(path.className);
  }
  adoptKeys(path.keys, true);
}

InstanceBody::InstanceBody(InstanceDataPtr data, PropertyNames names)
    : m_data(std::move(data)), m_isShared(true) {
  if (names != nullptr) {
    m_filter = std::make_unique<PropertyFilter>();
    m_filter->names = *names;
  }
}

InstanceBody::InstanceBody(const InstanceBody& other)
    : Body(),
      m_data(other.share()),
      m_isShared(true),
      m_pathIsExplicit(other.m_pathIsExplicit),
      m_keyNames(other.m_keyNames) {
  if (other.m_filter) m_filter = std::make_unique<PropertyFilter>(*other.m_filter);
}

InstanceDataPtr InstanceBody::share() const noexcept {
  m_isShared.store(true, std::memory_order_relaxed);
  return m_data;
}

InstanceData& InstanceBody::change() {
  if (m_isShared.load(std::memory_order_relaxed)) {
    m_data = boost::make_shared<InstanceData>(*m_data);
    m_isShared.store(false, std::memory_order_relaxed);
  }
  return *m_data;
}

bool InstanceBody::showsDeclared(std::size_t position) const {
  if (!m_filter) return true;
  const PropertyDeclaration& property = m_data->declaration->properties[position];
  return isKey(property) || m_filter->shows(property.name);
}

bool InstanceBody::isKey(const PropertyDeclaration& property) const {
  return property.isKey || (m_data->declaration->isOpen && isUndeclaredKey(property.name));
}

bool InstanceBody::isUndeclaredKey(const std::string& name) const {
  return contains(m_keyNames, name) || m_data->path.findKey(name) != nullptr;
}

bool InstanceBody::showsExtra(const std::string& name) const {
  return !m_filter || m_filter->shows(name) || isUndeclaredKey(name);
}

std::size_t InstanceBody::positionOf(const char* name) const {
  const ClassDeclaration* declaration = m_data->declaration.get();
  if (declaration == nullptr) return ClassDeclaration::kNoProperty;
  const auto& properties = declaration->properties;
  ThreadState& thread = threadState();
  KnownPosition& known = knownPosition(thread, name);
  const bool isKnown = known.declaration == declaration && known.name == name &&
                       known.position < properties.size() &&
                       std::strcmp(properties[known.position].name.c_str(), name) == 0;
  if (!isKnown) {
    thread.scratch = name;
    known = KnownPosition{declaration, name, declaration->findProperty(thread.scratch)};
  }
  return known.position < m_data->values.size() ? known.position : ClassDeclaration::kNoProperty;
}

const TCIMValue* InstanceBody::find(const char* name) const {
  const std::size_t position = positionOf(name);
  if (position != ClassDeclaration::kNoProperty) {
    return showsDeclared(position) ? &m_data->values[position] : nullptr;
  }
  return showsExtra(name) ? findNamed(m_data->extras, name) : nullptr;
}

bool InstanceBody::at(std::size_t index, const std::string*& name, const TCIMValue*& value) const {
  for (std::size_t position = 0; position < declaredCount(*m_data); ++position) {
    if (!showsDeclared(position) || index-- != 0) continue;
    name = &m_data->declaration->properties[position].name;
    value = &m_data->values[position];
    return true;
  }
  for (const auto& extra : m_data->extras) {
    if (!showsExtra(extra.first) || index-- != 0) continue;
    name = &extra.first;
    value = &extra.second;
    return true;
  }
  return false;
}

std::size_t InstanceBody::count() const {
  std::size_t count = 0;
  const std::string* name = nullptr;
  const TCIMValue* value = nullptr;
  if (!m_filter) return declaredCount(*m_data) + m_data->extras.size();
  while (at(count, name, value)) ++count;
  return count;
}

void InstanceBody::set(const char* name, TCIMValue value) {
  const std::size_t position = positionOf(name);
  if (position == ClassDeclaration::kNoProperty) {
    setExtra(name, std::move(value));
  } else {
    setDeclared(position, std::move(value));
  }
}

void InstanceBody::setDeclared(std::size_t position, TCIMValue value) {
  const PropertyDeclaration& property = m_data->declaration->properties[position];
  if (value.GetType() != property.type || value.IsArray() != property.isArray) {
    value = fittedTo(std::move(value), property.type, property.isArray, property.name);
  }
  if (!showsDeclared(position)) return;
  InstanceData& data = change();
  if (isKey(property) && !m_pathIsExplicit && !value.IsNull()) {
    data.path.setKey(property.name, value);
  }
  data.values[position] = std::move(value);
}

void InstanceBody::setExtra(const char* name, TCIMValue value) {
  if (!showsExtra(name)) return;
  InstanceData& data = change();
  if (isUndeclaredKey(name) && !m_pathIsExplicit && !value.IsNull())
    data.path.setKey(repaired(name), value);
  setNamed(data.extras, name, std::move(value));
}

void InstanceBody::adoptKeys(const NamedValues& keys, bool replace) {
  for (const auto& key : keys) {
    const std::size_t position = positionOf(key.first.c_str());
    if (position == ClassDeclaration::kNoProperty) {
      if (replace || find(key.first.c_str()) == nullptr) {
        setNamed(change().extras, key.first.c_str(), key.second);
      }
    } else if (replace || m_data->values[position].IsNull()) {
      setDeclared(position, key.second);
    }
  }
}

void InstanceBody::setFilter(const char** names, const char** keys) {
  for (; keys != nullptr && *keys != nullptr; ++keys) {
    if (contains(m_keyNames, *keys)) continue;
    m_keyNames.emplace_back(*keys);
    const TCIMValue* value = findNamed(m_data->extras, *keys);
    if (value != nullptr && !value->IsNull() && !m_pathIsExplicit) {
      const TCIMValue key = *value;
      change().path.setKey(repaired(*keys), key);
    }
  }
  m_filter.reset();
  if (names == nullptr) return;
  m_filter = std::make_unique<PropertyFilter>();
  for (; *names != nullptr; ++names) m_filter->names.emplace_back(*names);
  // A key that the class does not declare as one passes too.
  m_filter->names.insert(m_filter->names.end(), m_keyNames.begin(), m_keyNames.end());
  hideFiltered();
}

void InstanceBody::hideFiltered() {
  const InstanceDataPtr shown = filtered(m_data, &m_filter->names);
  if (shown == m_data) return;
  m_data = shown;
  m_isShared.store(false, std::memory_order_relaxed);
}

void InstanceBody::setPath(const ObjectPath& path) {
  m_pathIsExplicit = true;
  change().path = path;
  adoptKeys(path.keys, false);
}

}  // namespace cmpinsp::broker
