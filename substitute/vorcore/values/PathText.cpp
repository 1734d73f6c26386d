#include "substitute/vorcore/values/PathText.h"

#include <algorithm>

#include "substitute/vorcore/values/ClassDeclaration.h"
#include "substitute/vorcore/values/TypeNames.h"

namespace vorcore {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

void appendQuoted(std::string& path, const std::string& text, char mark = '"') {
  path += mark;
  for (const char letter : text) {
    if (letter == mark || letter == '\\') path += '\\';
    path += letter;
  }
  path += mark;
}

/// A real has a point in a path (DSP0207): without one it would be read as an integer.
void appendReal(std::string& path, std::string text) {
  const std::size_t end = text.find_first_not_of("-0123456789");
  if (end == std::string::npos) {
    text += ".0";
  } else if (text[end] == 'e') {
    text.insert(end, ".0");
  }
  path += text;
}

void appendValue(std::string& path, const TCIMValue& value) {
  if (value.IsNull()) {
    path += "NULL";
    return;
  }
  const ECIMType type = value.GetType();
  if (!value.IsArray() && type == ECIMType::eBoolean) {
    path += value.ToBoolean() ? "TRUE" : "FALSE";
  } else if (!value.IsArray() && isRealType(type)) {
    appendReal(path, value.ToString(10));
  } else if (!value.IsArray() && type == ECIMType::eChar16) {
    appendQuoted(path, value.ToString(10), '\'');
  } else if (!value.IsArray() && (isUnsignedType(type) || isSignedType(type))) {
    path += value.ToString(10);
  } else if (!value.IsArray() && isTextType(type)) {
    appendQuoted(path, value.GetText());
  } else {
    appendQuoted(path, value.ToString(10));
  }
}

}  // namespace

std::string pathText(const std::string& nameSpace, const std::string& className,
                     std::vector<KeyView> keys) {
  std::sort(keys.begin(), keys.end(), [](const KeyView& left, const KeyView& right) {
    return lessName(*left.first, *right.first);
  });
  std::string path = nameSpace;
  if (!path.empty()) path += ':';
  path += className;
  char separator = '.';
  for (const KeyView& key : keys) {
    path += separator;
    path += *key.first;
    path += '=';
    appendValue(path, *key.second);
    separator = ',';
  }
  return path;
}

}  // namespace vorcore
