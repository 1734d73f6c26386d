#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <map>
#include <string>

#include "framework/ICIMReferenceBody.h"
#include "tests/support/LiveObject.h"

namespace support {

class ScriptedClass;

/// Where an instance lives: a reference's parts, and the class that it leads to.
struct Path {
  std::string className;
  std::string keyName;
  std::string keyValue;
  boost::weak_ptr<ScriptedClass> theClass;

  /// `root/cimv2:Class.Key="value"`
  std::string text() const;
};

/// A reference whose `GetClass` and `GetPath` are recorded, as `ref PATH.GetClass()`, and can fail.
class ScriptedReferenceBody : public NZELVOR20::ICIMReferenceBody, public LiveObject {
 public:
  explicit ScriptedReferenceBody(Path path);

  boost::shared_ptr<NZELVOR20::ICIMClass> GetClass() const override;
  std::string GetPath() const override;
  boost::shared_ptr<NZELVOR20::ICIMNamespace> GetNamespace() const override;
  std::string GetNamespaceName() const override;
  std::string GetClassName() const override;
  std::map<std::string, NZELVOR20::TCIMValue> GetKeys() const override;

  /// The path's text, unrecorded.
  const std::string& path() const { return m_text; }

 private:
  std::string call(const std::string& operation) const;

  Path m_path;
  std::string m_text;
};

}  // namespace support
