#include "tests/support/ScriptedProperty.h"

#include <utility>

#include "tests/support/Script.h"
#include "tests/support/Text.h"

namespace support {

ScriptedProperty::ScriptedProperty(const std::string& label, std::string name,
                                   NZELVOR20::TCIMValue value, std::string rendered)
    : m_label("prop " + label + "." + name),
      m_name(std::move(name)),
      m_value(std::move(value)),
      m_rendered(std::move(rendered)) {}

std::string ScriptedProperty::GetName() const {
  Script::current().enter(m_label + ".GetName()");
  return m_name;
}

NZELVOR20::TCIMValue ScriptedProperty::GetValue(NZELVOR20::TOptionsMap options) {
  Script::current().enter(m_label + ".GetValue(" + describe(options) + ")");
  return m_value;
}

std::string ScriptedProperty::ToString() {
  Script::current().enter(m_label + ".ToString()");
  return m_rendered;
}

NZELVOR20::ECIMType ScriptedProperty::GetType() const {
  Script::current().enter(m_label + ".GetType()");
  return m_value.GetType();
}

bool ScriptedProperty::IsArray() const {
  Script::current().enter(m_label + ".IsArray()");
  return m_value.IsArray();
}

NZELVOR20::TCIMValue ScriptedProperty::GetQualifier(std::string name,
                                                    NZELVOR20::TOptionsMap options) {
  Script::current().refuse(m_label + ".GetQualifier(" + quoted(name) + ", " + describe(options) +
                           ")");
}

}  // namespace support
