#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "framework/ICIMInstance.h"
#include "framework/TCMPIInstance.h"
#include "tests/support/LiveObject.h"
#include "tests/support/ScriptedReferenceBody.h"

namespace support {

/// What a method does: sees the input parameters, leaves the output parameters in their place.
using MethodBody = std::function<NZELVOR20::TCIMValue(NZELVOR20::TParameterMap&)>;

/// An instance as a test writes it. `handle()` is what the code under test gets; it is recorded as
/// `inst LABEL.GetProperty("Name", {})` and so on. Two kinds: one on which methods can be invoked
/// (a `TCMPIInstance`), and a plain one, for which that downcast fails.
class ScriptedInstance : public LiveObject,
                         public boost::enable_shared_from_this<ScriptedInstance> {
 public:
  static boost::shared_ptr<ScriptedInstance> makeCmpi(const std::string& label, Path path);
  static boost::shared_ptr<ScriptedInstance> makePlain(const std::string& label, Path path);

  ScriptedInstance(std::string label, Path path);
  virtual ~ScriptedInstance() = default;

  virtual boost::shared_ptr<NZELVOR20::ICIMInstance> handle() = 0;

  const std::string& label() const { return m_label; }
  const Path& path() const { return m_path; }
  /// A reference to this instance.
  NZELVOR20::TCIMReference reference() const;

  /// Gives the property `name` a value, rendered as `value.ToString(10)` or as said.
  void set(const std::string& name, const NZELVOR20::TCIMValue& value);
  void set(const std::string& name, const NZELVOR20::TCIMValue& value, const std::string& rendered);
  /// Gives successive fetches of the property successive values; the last one stays.
  void setInTurn(const std::string& name, const std::vector<NZELVOR20::TCIMValue>& values);
  /// `GetProperty` returns an empty handle.
  void setEmpty(const std::string& name);
  /// `GetProperty` throws `TVORException` (no such property), as for any property never set.
  void remove(const std::string& name);
  /// What `GetPegasusNSPStr` answers.
  void setPegasusText(const std::string& text) { m_pegasusText = text; }
  /// What `InvokeMethod` does for `method`; others throw `TVORException` (method not found).
  void setMethod(const std::string& method, MethodBody body);
  /// The method `method` returns 0 and puts `output` in the place of the parameters.
  void setMethodOutput(const std::string& method, const NZELVOR20::TParameterMap& output);

  /// The property's value of the moment; unrecorded.
  NZELVOR20::TCIMValue value(const std::string& name) const;
  /// A second instance with the same properties, under another label.
  boost::shared_ptr<ScriptedInstance> copyAs(const std::string& label) const;

 protected:
  NZELVOR20::TCIMReference getObjectPath(const NZELVOR20::TOptionsMap& options);
  boost::shared_ptr<NZELVOR20::ICIMProperty> getProperty(const std::string& name,
                                                         const NZELVOR20::TOptionsMap& options);
  void setProperty(const std::string& name, const NZELVOR20::TCIMValue& value,
                   const NZELVOR20::TOptionsMap& options);
  std::string getPegasusText();
  boost::shared_ptr<NZELVOR20::ICIMClass> getClass(const NZELVOR20::TOptionsMap& options);
  void enumerateProperties(const NZELVOR20::TPropertyCallback& callback,
                           const NZELVOR20::TOptionsMap& options);
  NZELVOR20::TCIMValue invokeMethod(const std::string& method, NZELVOR20::TParameterMap& parameters,
                                    const NZELVOR20::TOptionsMap& options);

 private:
  struct Reading {
    NZELVOR20::TCIMValue value;
    std::string rendered;
    bool isEmpty = false;
  };
  struct Property {
    std::string name;
    std::deque<Reading> readings;
  };

  static Reading readingOf(const NZELVOR20::TCIMValue& value);
  Property& findOrAdd(const std::string& name);
  Property* find(const std::string& name);
  boost::shared_ptr<NZELVOR20::ICIMProperty> fetch(Property& property);
  std::string call(const std::string& operation, const std::string& arguments) const;

  std::string m_label;
  Path m_path;
  std::vector<Property> m_properties;
  std::map<std::string, MethodBody> m_methods;
  std::string m_pegasusText;
};

using InstancePtr = boost::shared_ptr<ScriptedInstance>;

}  // namespace support
