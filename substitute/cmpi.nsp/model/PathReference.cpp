#include "substitute/cmpi.nsp/model/PathReference.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <utility>

#include "framework/ICIMReferenceBody.h"
#include "framework/TVORException.h"

namespace cmpinsp {
namespace {

using namespace NZELVOR20;

class PathReferenceBody final : public ICIMReferenceBody {
 public:
  PathReferenceBody(ObjectPath path, const boost::shared_ptr<ICIMNamespace>& ns)
      : m_path(std::move(path)), m_namespace(ns) {}

  const ObjectPath& path() const { return m_path; }

  boost::shared_ptr<ICIMClass> GetClass() const override { return mapped().GetClass(); }

  std::string GetPath() const override {
    if (m_path.className.empty()) return mapped().GetPath();
    return m_path.toText();
  }

  boost::shared_ptr<ICIMNamespace> GetNamespace() const override { return m_namespace.lock(); }
  std::string GetNamespaceName() const override { return m_path.nameSpace; }
  std::string GetClassName() const override { return m_path.className; }

  std::map<std::string, TCIMValue> GetKeys() const override {
    return std::map<std::string, TCIMValue>(m_path.keys.begin(), m_path.keys.end());
  }

 private:
  /// The same reference with a key map, which knows how a class is found.
  TCIMReference mapped() const {
    return TCIMReference(GetNamespace(), m_path.nameSpace, m_path.className, GetKeys());
  }

  ObjectPath m_path;
  boost::weak_ptr<ICIMNamespace> m_namespace;
};

}  // namespace

TCIMReference referenceTo(ObjectPath path, const boost::shared_ptr<ICIMNamespace>& ns) {
  const boost::shared_ptr<const ICIMReferenceBody> body =
      boost::make_shared<PathReferenceBody>(std::move(path), ns);
  return TCIMReference(body);
}

ObjectPath pathOf(const TCIMReference& reference) {
  if (const auto* own = dynamic_cast<const PathReferenceBody*>(reference.GetBody().get())) {
    return own->path();
  }
  ObjectPath path;
  path.nameSpace = reference.GetNamespaceName();
  path.className = reference.GetClassName();
  for (auto& key : reference.GetKeys()) path.keys.emplace_back(key.first, key.second);
  return path;
}

}  // namespace cmpinsp
