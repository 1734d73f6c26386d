#pragma once

#include <string>

#include "framework/ICIMProperty.h"
#include "tests/support/LiveObject.h"

namespace support {

/// A property as one fetch found it: a value, and the text that it is rendered as, which need not
/// have anything to do with the value. Recorded as `prop LABEL.NAME.GetValue({})`.
class ScriptedProperty : public NZELVOR20::ICIMProperty, public LiveObject {
 public:
  ScriptedProperty(const std::string& label, std::string name, NZELVOR20::TCIMValue value,
                   std::string rendered);

  std::string GetName() const override;
  NZELVOR20::TCIMValue GetValue(NZELVOR20::TOptionsMap options) override;
  std::string ToString() override;
  NZELVOR20::ECIMType GetType() const override;
  bool IsArray() const override;
  NZELVOR20::TCIMValue GetQualifier(std::string name, NZELVOR20::TOptionsMap options) override;

 private:
  std::string m_label;
  std::string m_name;
  NZELVOR20::TCIMValue m_value;
  std::string m_rendered;
};

}  // namespace support
