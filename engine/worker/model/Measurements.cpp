#include "engine/worker/model/Measurements.h"

#include <optional>
#include <stdexcept>
#include <unordered_map>

#include "engine/worker/model/CimText.h"
#include "text/Words.h"

namespace engine::worker {
namespace {

using NZELVOR20::ECIMType;

/// Why a record cannot be read.
struct Unreadable : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Declaration {
  ECIMType type = ECIMType::eString;
  std::string_view name;
  bool isArray = false;
  std::optional<MeasuredValue> value;  ///< none: null
  bool isCompanion = false;

  bool isText() const { return isArray || !(isNumber(type) || type == ECIMType::eBoolean); }
};

/// The bytes of the first character, which need not be ASCII.
std::string_view firstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  return text.substr(0, length);
}

bool canDelimit(char letter) {
  const bool isLetter = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
  const bool isDigit = letter >= '0' && letter <= '9';
  return !isLetter && !isDigit && std::string_view(" \t\r\n_[]").find(letter) == std::string::npos;
}

/// What stands behind each delimiter; the text begins with one.
std::vector<std::string_view> split(std::string_view text, std::string_view delimiter) {
  std::vector<std::string_view> parts;
  std::size_t begin = delimiter.size();
  while (true) {
    const std::size_t end = text.find(delimiter, begin);
    parts.push_back(text.substr(begin, end - begin));
    if (end == std::string_view::npos) return parts;
    begin = end + delimiter.size();
  }
}

std::string placeOf(const char* what, std::size_t index) {
  return std::string(what) + " " + std::to_string(index + 1);
}

Declaration readDeclaration(std::string_view text, std::size_t index) {
  text = text::trimmed(text);
  const std::size_t blank = text.find_first_of(" \t\r\n");
  if (blank == std::string_view::npos)
    throw Unreadable(placeOf("declaration", index) + " is no type and name: " + shortened(text));
  Declaration declaration;
  const auto type = typeNamed(text.substr(0, blank));
  if (!type)
    throw Unreadable(placeOf("declaration", index) +
                     " has an unknown type: " + shortened(text.substr(0, blank)));
  declaration.type = *type;
  declaration.name = text::trimmed(text.substr(blank));
  const std::size_t length = declaration.name.size();
  declaration.isArray = length > 2 && declaration.name.substr(length - 2) == "[]";
  if (declaration.isArray) declaration.name = text::trimmed(declaration.name.substr(0, length - 2));
  if (declaration.name.find_first_of(" \t\r\n[]") != std::string_view::npos)
    throw Unreadable(placeOf("declaration", index) +
                     " has more than a type and a name: " + shortened(text));
  return declaration;
}

MeasuredValue readValue(const Declaration& declaration, std::string_view text, std::size_t index) {
  if (declaration.isText()) return std::string(text);
  if (declaration.type == ECIMType::eBoolean) {
    if (const auto value = readBoolean(text)) return *value;
  } else if (isUnsigned(declaration.type)) {
    if (const auto value = readUnsigned(text, declaration.type)) return static_cast<double>(*value);
  } else if (isSigned(declaration.type)) {
    if (const auto value = readSigned(text, declaration.type)) return static_cast<double>(*value);
  } else if (const auto value = readReal(text)) {
    return *value;
  }
  throw Unreadable(placeOf("value", index) + ", of " + shortened(declaration.name) + ", is no " +
                   typeName(declaration.type) + ": " + shortened(text));
}

std::vector<Declaration> readDeclarations(std::string_view format, std::string_view delimiter) {
  std::vector<Declaration> declarations;
  std::vector<std::string_view> parts = split(format, delimiter);
  if (parts.size() > 1 && text::trimmed(parts.back()).empty()) parts.pop_back();
  declarations.reserve(parts.size());
  for (const std::string_view part : parts)
    declarations.push_back(readDeclaration(part, declarations.size()));
  return declarations;
}

void readValues(std::string_view data, std::string_view delimiter,
                std::vector<Declaration>& declarations) {
  if (data.empty()) return;
  if (data.substr(0, delimiter.size()) != delimiter)
    throw Unreadable("the data do not begin with the delimiter of the format");
  const std::vector<std::string_view> values = split(data, delimiter);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const bool isNull = text::trimmed(values[i]).empty();
    if (i >= declarations.size() && !isNull)
      throw Unreadable(placeOf("value", i) + " has no declaration: " + shortened(values[i]));
    if (!isNull) declarations[i].value = readValue(declarations[i], values[i], i);
  }
}

using Index = std::unordered_map<std::string, std::size_t>;

Index indexByName(const std::vector<Declaration>& declarations) {
  Index index;
  for (std::size_t i = 0; i < declarations.size(); ++i) {
    if (!index.emplace(lowered(declarations[i].name), i).second)
      throw Unreadable(placeOf("declaration", i) +
                       " is there twice: " + shortened(declarations[i].name));
  }
  return index;
}

bool isNumeric(const Declaration& declaration) {
  return !declaration.isArray && isNumber(declaration.type);
}

/// Finds what belongs to a declaration by its name with an ending, and marks it.
class Companions {
 public:
  explicit Companions(std::vector<Declaration>& declarations)
      : m_declarations(declarations), m_index(indexByName(declarations)) {}

  std::string unitOf(const Declaration& base) {
    Declaration* const unit = find(base, "units");
    if (!unit || unit->isArray || unit->type != ECIMType::eString) return {};
    unit->isCompanion = true;
    return unit->value ? std::get<std::string>(*unit->value) : std::string();
  }

  std::optional<double> limitOf(const Declaration& base, const char* ending) {
    Declaration* const limit = isNumeric(base) ? find(base, ending) : nullptr;
    if (!limit || !isNumeric(*limit)) return std::nullopt;
    limit->isCompanion = true;
    if (!limit->value) return std::nullopt;
    return std::get<double>(*limit->value);
  }

  std::string part() {
    const auto found = m_index.find("part");
    if (found == m_index.end()) return {};
    Declaration& part = m_declarations[found->second];
    if (part.isArray || part.type != ECIMType::eString) return {};
    part.isCompanion = true;
    return part.value ? std::get<std::string>(*part.value) : std::string();
  }

 private:
  Declaration* find(const Declaration& base, const char* ending) {
    const auto found = m_index.find(lowered(base.name) + ending);
    return found == m_index.end() ? nullptr : &m_declarations[found->second];
  }

  std::vector<Declaration>& m_declarations;
  const Index m_index;
};

std::vector<Measurement> measurementsOf(std::vector<Declaration>& declarations) {
  Companions companions(declarations);
  const std::string part = companions.part();
  std::vector<Measurement> all(declarations.size());
  for (std::size_t i = 0; i < declarations.size(); ++i) {
    const Declaration& base = declarations[i];
    all[i].unit = companions.unitOf(base);
    all[i].minimum = companions.limitOf(base, "minimum");
    all[i].maximum = companions.limitOf(base, "maximum");
  }
  std::vector<Measurement> measurements;
  for (std::size_t i = 0; i < declarations.size(); ++i) {
    if (declarations[i].isCompanion || !declarations[i].value) continue;
    all[i].name = declarations[i].name;
    all[i].value = *declarations[i].value;
    all[i].part = part;
    measurements.push_back(std::move(all[i]));
  }
  return measurements;
}

}  // namespace

RecordReading readMeasurements(std::string_view format, std::string_view data) {
  RecordReading reading;
  if (text::trimmed(format).empty()) return reading;
  try {
    if (!canDelimit(format[0])) throw Unreadable("the format does not begin with a delimiter");
    const std::string_view delimiter = firstCharacter(format);
    std::vector<Declaration> declarations = readDeclarations(format, delimiter);
    readValues(data, delimiter, declarations);
    reading.measurements = measurementsOf(declarations);
  } catch (const Unreadable& error) {
    reading.error = error.what();
  }
  return reading;
}

}  // namespace engine::worker
