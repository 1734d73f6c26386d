#include "tests/support/Text.h"

#include <cstdio>

#include "tests/support/ScriptedInstance.h"
#include "tests/support/ScriptedNamespace.h"
#include "tests/support/ScriptedReferenceBody.h"

namespace support {

using NZELVOR20::ECIMType;

namespace {

std::string escaped(char character) {
  switch (character) {
    case '\n':
      return "\\n";
    case '\t':
      return "\\t";
    case '\b':
      return "\\b";
    case '\r':
      return "\\r";
    default:
      break;
  }
  const auto code = static_cast<unsigned char>(character);
  if (code >= 0x20U && code != 0x7FU) {
    return std::string(1, character);
  }
  char text[8];
  std::snprintf(text, sizeof(text), "\\x%02X", static_cast<unsigned int>(code));
  return text;
}

std::string describeArray(const NZELVOR20::TCIMValue& value) {
  std::string text;
  for (const NZELVOR20::TCIMValue& element : value.ToArray()) {
    text += (text.empty() ? "" : ", ") + describe(element);
  }
  return "[" + text + "]";
}

}  // namespace

std::string lines(std::initializer_list<std::string> entries) {
  std::string text;
  for (const std::string& entry : entries) {
    text += entry + "\n";
  }
  return text;
}

std::string trace(const std::string& text) { return logLine(3, text); }

std::string error(const std::string& text) { return logLine(0, text); }

std::string logLine(int level, const std::string& text) {
  return "log " + std::to_string(level) + " " + quoted(text);
}

std::string out(const std::string& text) { return "out " + quoted(text); }

std::string flushed() { return "flush"; }

std::string sleptFor(unsigned int milliseconds) {
  return "sleep(" + std::to_string(milliseconds) + ")";
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char character : text) {
    result += escaped(character);
  }
  return result + "\"";
}

std::string describe(const NZELVOR20::TCIMValue& value) {
  if (value.IsNull()) {
    return "null";
  }
  if (value.IsArray()) {
    return describeArray(value);
  }
  switch (value.GetType()) {
    case ECIMType::eString:
      return quoted(value.ToText());
    case ECIMType::eReference:
      return describe(value.ToReference());
    case ECIMType::eInstance:
      return describe(value.ToInstance());
    default:
      return value.ToString(10);
  }
}

std::string describe(const NZELVOR20::TCIMReference& reference) {
  const auto* scripted = dynamic_cast<const ScriptedReferenceBody*>(reference.GetBody().get());
  if (scripted != nullptr) {
    return scripted->path();
  }
  return reference.GetClassName().empty() ? "(empty)" : reference.GetPath();
}

std::string describe(const NZELVOR20::TOptionsMap& map) {
  std::string text;
  for (const auto& [name, value] : map) {
    text += (text.empty() ? "" : ", ") + name + "=" + describe(value);
  }
  return "{" + text + "}";
}

std::string describe(const boost::shared_ptr<NZELVOR20::ICIMInstance>& instance) {
  const auto* scripted = dynamic_cast<const ScriptedInstance*>(instance.get());
  if (scripted != nullptr) {
    return "inst " + scripted->label();
  }
  return instance ? "inst (unscripted)" : "inst (empty)";
}

std::string describe(const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns) {
  const auto* scripted = dynamic_cast<const ScriptedNamespace*>(ns.get());
  if (scripted != nullptr) {
    return "ns " + scripted->name();
  }
  return ns ? "ns (unscripted)" : "ns (empty)";
}

}  // namespace support
