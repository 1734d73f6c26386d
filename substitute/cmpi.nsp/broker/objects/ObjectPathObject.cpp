#include "substitute/cmpi.nsp/broker/objects/ObjectPathObject.h"

#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"

namespace cmpinsp::broker {

std::string namespaceText(const char* text) {
  if (text == nullptr) return std::string();
  while (*text == '/') ++text;
  return repaired(text);
}

namespace {

using vorcore::ClassDeclarationPtr;

CMPIStatus setNameSpace(const CMPIObjectPath* path, const char* ns) noexcept {
  return perform([&] { bodyOf<ObjectPathBody>(path).path.nameSpace = namespaceText(ns); });
}

/// A part of the path as a string that lives as long as the path.
template <typename Part>
CMPIString* partOf(const CMPIObjectPath* path, CMPIStatus* st, Part part) noexcept {
  return answer(st, static_cast<CMPIString*>(nullptr), [&] {
    Handle& handle = handleOf(path, Kind::kObjectPath);
    return childString(handle, part(bodyOf<ObjectPathBody>(handle)));
  });
}

CMPIString* getNameSpace(const CMPIObjectPath* path, CMPIStatus* st) noexcept {
  return partOf(path, st, [](const ObjectPathBody& body) { return body.path.nameSpace; });
}

CMPIStatus setHostname(const CMPIObjectPath* path, const char* host) noexcept {
  return perform(
      [&] { bodyOf<ObjectPathBody>(path).host = repaired(host == nullptr ? "" : host); });
}

CMPIString* getHostname(const CMPIObjectPath* path, CMPIStatus* st) noexcept {
  return partOf(path, st, [](const ObjectPathBody& body) { return body.host; });
}

CMPIStatus setClassName(const CMPIObjectPath* path, const char* className) noexcept {
  return perform([&] {
    bodyOf<ObjectPathBody>(path).path.className = repaired(required(className, "the class name"));
  });
}

CMPIString* getClassName(const CMPIObjectPath* path, CMPIStatus* st) noexcept {
  return partOf(path, st, [](const ObjectPathBody& body) { return body.path.className; });
}

CMPIStatus addKey(const CMPIObjectPath* path, const char* key, const CMPIValue* value,
                  const CMPIType type) noexcept {
  return perform([&] {
    ObjectPathBody& body = bodyOf<ObjectPathBody>(path);
    NZELVOR20::TCIMValue binding = readValue(value, type);
    if (binding.IsNull() || binding.IsArray()) {
      throw Failure(CMPI_RC_ERR_INVALID_PARAMETER, "a key cannot be null or an array");
    }
    setNamed(body.path.keys, required(key, "the key's name"), std::move(binding));
  });
}

CMPIData getKey(const CMPIObjectPath* path, const char* key, CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(path, Kind::kObjectPath);
    return namedData(handle, bodyOf<ObjectPathBody>(handle).path.keys, key, CMPI_keyValue);
  });
}

CMPIData getKeyAt(const CMPIObjectPath* path, CMPICount index, CMPIString** name,
                  CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(path, Kind::kObjectPath);
    return namedDataAt(handle, bodyOf<ObjectPathBody>(handle).path.keys, index, name,
                       CMPI_keyValue);
  });
}

CMPICount getKeyCount(const CMPIObjectPath* path, CMPIStatus* st) noexcept {
  return answer(st, CMPICount{0}, [&] {
    return static_cast<CMPICount>(bodyOf<ObjectPathBody>(path).path.keys.size());
  });
}

CMPIStatus setNameSpaceFromObjectPath(const CMPIObjectPath* path,
                                      const CMPIObjectPath* src) noexcept {
  return perform([&] {
    const ObjectPathBody& source = bodyOf<ObjectPathBody>(src);
    bodyOf<ObjectPathBody>(path).path.nameSpace = source.path.nameSpace;
  });
}

CMPIStatus setHostAndNameSpaceFromObjectPath(const CMPIObjectPath* path,
                                             const CMPIObjectPath* src) noexcept {
  return perform([&] {
    const ObjectPathBody& source = bodyOf<ObjectPathBody>(src);
    ObjectPathBody& body = bodyOf<ObjectPathBody>(path);
    body.path.nameSpace = source.path.nameSpace;
    body.host = source.host;
  });
}

/// The declared class of a path; where nobody declared it, its qualifiers cannot be told.
ClassDeclarationPtr declarationOf(const Handle& path) {
  if (path.broker == nullptr) notSupported("a qualifier without a broker");
  const std::string& className = bodyOf<ObjectPathBody>(path).path.className;
  const auto shape = path.broker->shapeOf(className);
  if (!shape) throw Failure(CMPI_RC_ERR_INVALID_CLASS, "class " + className + " is not declared");
  return shape->declaration();
}

/// The qualifier that `pick` finds in the class of `path`, as data of the path.
template <typename Pick>
CMPIData qualifierOf(const CMPIObjectPath* path, const char* qualifier, CMPIStatus* st,
                     Pick pick) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(path, Kind::kObjectPath);
    const ClassDeclarationPtr declaration = declarationOf(handle);
    const std::vector<vorcore::Qualifier>* qualifiers = pick(*declaration);
    const NZELVOR20::TCIMValue* value = nullptr;
    if (qualifiers != nullptr) {
      value = vorcore::findQualifier(*qualifiers, required(qualifier, "the qualifier's name"));
    }
    if (value == nullptr) noSuchValue(qualifier == nullptr ? "such element" : qualifier);
    return dataOf(handle, *value);
  });
}

CMPIData getClassQualifier(const CMPIObjectPath* path, const char* qualifier,
                           CMPIStatus* st) noexcept {
  return qualifierOf(path, qualifier, st, [](const vorcore::ClassDeclaration& declaration) {
    return &declaration.qualifiers;
  });
}

CMPIData getPropertyQualifier(const CMPIObjectPath* path, const char* property,
                              const char* qualifier, CMPIStatus* st) noexcept {
  using Qualifiers = const std::vector<vorcore::Qualifier>*;
  return qualifierOf(path, qualifier, st, [&](const vorcore::ClassDeclaration& declaration) {
    const std::size_t at = declaration.findProperty(required(property, "the property's name"));
    return at < declaration.properties.size() ? &declaration.properties[at].qualifiers
                                              : Qualifiers{nullptr};
  });
}

CMPIData getMethodQualifier(const CMPIObjectPath* path, const char* method, const char* qualifier,
                            CMPIStatus* st) noexcept {
  using Qualifiers = const std::vector<vorcore::Qualifier>*;
  return qualifierOf(path, qualifier, st, [&](const vorcore::ClassDeclaration& declaration) {
    const auto* found = declaration.findMethod(required(method, "the method's name"));
    return found != nullptr ? &found->qualifiers : Qualifiers{nullptr};
  });
}

CMPIData getParameterQualifier(const CMPIObjectPath* path, const char* method, const char* property,
                               const char* qualifier, CMPIStatus* st) noexcept {
  using Qualifiers = const std::vector<vorcore::Qualifier>*;
  return qualifierOf(path, qualifier, st, [&](const vorcore::ClassDeclaration& declaration) {
    const auto* found = declaration.findMethod(required(method, "the method's name"));
    const std::string name = required(property, "the parameter's name");
    if (found == nullptr) return Qualifiers{nullptr};
    for (const vorcore::ParameterDeclaration& parameter : found->parameters) {
      if (vorcore::equalNames(parameter.name, name)) return &parameter.qualifiers;
    }
    return Qualifiers{nullptr};
  });
}

CMPIString* toString(const CMPIObjectPath* path, CMPIStatus* st) noexcept {
  return partOf(path, st, [](const ObjectPathBody& body) { return body.path.toText(); });
}

}  // namespace

const CMPIObjectPathFT kObjectPathTable = {CMPICurrentVersion,
                                           release<ObjectPathBody>,
                                           clone<ObjectPathBody>,
                                           setNameSpace,
                                           getNameSpace,
                                           setHostname,
                                           getHostname,
                                           setClassName,
                                           getClassName,
                                           addKey,
                                           getKey,
                                           getKeyAt,
                                           getKeyCount,
                                           setNameSpaceFromObjectPath,
                                           setHostAndNameSpaceFromObjectPath,
                                           getClassQualifier,
                                           getPropertyQualifier,
                                           getMethodQualifier,
                                           getParameterQualifier,
                                           toString};

}  // namespace cmpinsp::broker
