#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <limits>
#include <string>
#include <vector>

#include "framework/ICIMClass.h"
#include "tests/support/LiveObject.h"
#include "tests/support/ScriptedInstance.h"

namespace support {

class ScriptedNamespace;

/// A class with a list of instances, which may change from one enumeration to the next. Recorded as
/// `class LABEL.EnumerateInstances(deep=true, {})`; the label is the name unless another is given.
class ScriptedClass : public NZELVOR20::ICIMClass, public LiveObject {
 public:
  static constexpr int kForGood = std::numeric_limits<int>::max();

  explicit ScriptedClass(const std::string& name) : ScriptedClass(name, name) {}
  ScriptedClass(std::string name, std::string label);

  std::string GetName() const override;
  boost::shared_ptr<NZELVOR20::ICIMNamespace> GetNamespace(NZELVOR20::TOptionsMap options) override;
  void EnumerateInstances(NZELVOR20::TInstanceCallback callback, bool deep,
                          NZELVOR20::TOptionsMap options) override;
  void EnumerateInstanceNames(NZELVOR20::TReferenceCallback callback, bool deep,
                              NZELVOR20::TOptionsMap options) override;
  boost::shared_ptr<NZELVOR20::ICIMClass> GetSuperclass(NZELVOR20::TOptionsMap options) override;
  void EnumerateSubclasses(NZELVOR20::TClassCallback callback, bool deep,
                           NZELVOR20::TOptionsMap options) override;
  void EnumerateProperties(NZELVOR20::TPropertyCallback callback,
                           NZELVOR20::TOptionsMap options) override;
  NZELVOR20::TCIMValue GetQualifier(std::string name, NZELVOR20::TOptionsMap options) override;
  boost::shared_ptr<NZELVOR20::ICIMInstance> AllocateInstance(
      NZELVOR20::TOptionsMap options) override;

  /// The namespace that `GetNamespace` answers; held weakly. An empty one is answered as such.
  void serveBy(const boost::shared_ptr<ScriptedNamespace>& ns) { m_servedBy = ns; }
  boost::shared_ptr<ScriptedNamespace> servedBy() const { return m_servedBy.lock(); }

  /// Adds an instance that enumerations `from` to `to` (counted from 1) hand out. An empty pointer
  /// is handed out as an empty handle.
  void add(const InstancePtr& instance, int from = 1, int to = kForGood);
  /// Takes every instance out.
  void removeAll() { m_entries.clear(); }

  const std::string& name() const { return m_name; }
  int enumerations() const { return m_enumerations; }

 private:
  struct Entry {
    InstancePtr instance;
    int from;
    int to;
  };

  std::string call(const std::string& operation, const std::string& arguments) const;

  std::string m_name;
  std::string m_label;
  boost::weak_ptr<ScriptedNamespace> m_servedBy;
  std::vector<Entry> m_entries;
  int m_enumerations = 0;
};

using ClassPtr = boost::shared_ptr<ScriptedClass>;

}  // namespace support
