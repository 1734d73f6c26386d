#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"
#include "substitute/cmpi.nsp/model/InstanceData.h"

namespace cmpinsp::broker {

/// Which properties an instance shows: the listed ones and its keys.
struct PropertyFilter {
  std::vector<std::string> names;

  bool shows(const std::string& name) const;
};

/// `data` with nothing but the properties that `names` lists, and the keys; `data` itself where it
/// has nothing else. Null `names` lists everything.
InstanceDataPtr filtered(const InstanceDataPtr& data, PropertyNames names);

/// An instance in a provider's hands. Its data is shared with whoever it was handed to, and copied
/// before the provider changes it again. What a provider sets on a key property is part of the path
/// at once, so that the path is whole whenever somebody asks for it.
class InstanceBody final : public Body {
 public:
  using Object = CMPIInstance;
  static constexpr Kind kKind = Kind::kInstance;

  /// A new instance of the class that `path` names; its keys become properties.
  InstanceBody(Broker& broker, const ObjectPath& path);
  /// One that came from somebody else. With `names`, it shows no other properties.
  explicit InstanceBody(InstanceDataPtr data, PropertyNames names = nullptr);
  InstanceBody(const InstanceBody& other);

  const InstanceData& data() const noexcept { return *m_data; }
  /// The data for somebody else; it will not change.
  InstanceDataPtr share() const noexcept;
  /// The data to change; a copy of its own where it is shared.
  InstanceData& change();

  /// The property as it shows, or null.
  const NZELVOR20::TCIMValue* find(const char* name) const;
  /// The property that shows at `index`, in the order of declaration; false past the end.
  bool at(std::size_t index, const std::string*& name, const NZELVOR20::TCIMValue*& value) const;
  std::size_t count() const;
  /// Adds or replaces. Throws `Failure` (type mismatch) where the declared type does not take it.
  void set(const char* name, NZELVOR20::TCIMValue value);
  void setFilter(const char** names, const char** keys);
  void setPath(const ObjectPath& path);

 private:
  bool showsDeclared(std::size_t position) const;
  bool isKey(const vorcore::PropertyDeclaration& property) const;
  bool showsExtra(const std::string& name) const;
  /// Whether what the class does not declare is a key, as the provider or the path says.
  bool isUndeclaredKey(const std::string& name) const;
  std::size_t positionOf(const char* name) const;
  void setDeclared(std::size_t position, NZELVOR20::TCIMValue value);
  void setExtra(const char* name, NZELVOR20::TCIMValue value);
  void adoptKeys(const NamedValues& keys, bool replace);
  void hideFiltered();

  boost::shared_ptr<InstanceData> m_data;
  mutable std::atomic<bool> m_isShared{false};
  bool m_pathIsExplicit = false;
  std::unique_ptr<PropertyFilter> m_filter;
  std::vector<std::string> m_keyNames;  ///< of a class whose declaration does not tell them
};

}  // namespace cmpinsp::broker
