#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

#include "engine/events/EventLine.h"
#include "engine/events/EventNames.h"
#include "engine/events/Timestamp.h"

namespace engine {
namespace {

using Json = nlohmann::json;

/// How deep arrays and objects may lie in each other: events need three levels, and the parser of
/// the JSON library recurses when its values are destroyed.
constexpr int kDeepest = 16;

/// The members of one object; what is wrong with one is said with the path to it.
class Members {
 public:
  Members(const Json& object, std::string path) : m_object(object), m_path(std::move(path)) {
    if (!m_object.is_object()) fail("", "is no object");
  }

  bool has(const char* name) const { return m_object.contains(name); }

  const Json& at(const char* name) const {
    const auto member = m_object.find(name);
    if (member == m_object.end()) fail(name, "is missing");
    return *member;
  }

  std::string text(const char* name) const { return textIn(at(name), name); }
  std::string textOr(const char* name) const { return has(name) ? text(name) : std::string(); }

  std::uint64_t count(const char* name) const {
    const Json& value = at(name);
    if (!value.is_number_unsigned()) fail(name, "is no number from 0");
    return value.get<std::uint64_t>();
  }

  std::int64_t integer(const char* name) const {
    const Json& value = at(name);
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    const bool fits = value.is_number_integer() &&
                      (!value.is_number_unsigned() || value.get<std::uint64_t>() <= kMost);
    if (!fits) fail(name, "is no whole number");
    return value.get<std::int64_t>();
  }

  double number(const char* name) const {
    const Json& value = at(name);
    if (!value.is_number()) fail(name, "is no number");
    return value.get<double>();
  }

  bool flagOr(const char* name) const {
    if (!has(name)) return false;
    if (!at(name).is_boolean()) fail(name, "is neither true nor false");
    return at(name).get<bool>();
  }

  std::vector<std::string> texts(const char* name) const {
    std::vector<std::string> found;
    if (!at(name).is_array()) fail(name, "is no list");
    for (const Json& element : at(name)) found.push_back(textIn(element, name));
    return found;
  }
  std::vector<std::string> textsOr(const char* name) const {
    return has(name) ? texts(name) : std::vector<std::string>();
  }

  /// A member's value, or one in a list that is one.
  std::string textIn(const Json& value, const std::string& name) const {
    if (!value.is_string()) fail(name, "is no text");
    return value.get<std::string>();
  }

  template <typename Word>
  Word word(const char* name) const {
    Word word{};
    const std::string spelling = text(name);
    if (!readName(spelling, word))
      fail(name, "is \"" + spelling + "\", which is none of its words");
    return word;
  }

  [[noreturn]] void fail(const std::string& name, const std::string& what) const {
    const std::string separator = m_path.empty() || name.empty() ? "" : ".";
    const std::string where = m_path + separator + name;
    throw NoEvent((where.empty() ? "the event" : where) + " " + what);
  }

 private:
  const Json& m_object;
  std::string m_path;
};

Part partFrom(const Members& members) {
  Part part;
  part.kind = members.text("kind");
  part.name = members.text("name");
  part.location = members.textOr("location");
  part.manufacturer = members.textOr("manufacturer");
  part.model = members.textOr("model");
  part.version = members.textOr("version");
  part.serial = members.textOr("serial");
  return part;
}

void read(const Members& members, RunStarted& run) {
  run.version = members.text("version");
  run.commandLine = members.texts("commandLine");
  const Json& parameters = members.at("parameters");
  const Members parameterMembers(parameters, "run.parameters");
  for (const auto& parameter : parameters.items()) {
    run.parameters.emplace_back(parameter.key(),
                                parameterMembers.textIn(parameter.value(), parameter.key()));
  }
  run.host = members.textOr("host");
  run.firmware = members.textOr("firmware");
  if (!members.at("parts").is_array()) members.fail("parts", "is no list");
  for (const Json& part : members.at("parts")) run.parts.push_back(partFrom({part, "run.parts"}));
  run.tests = members.count("tests");
}

void read(const Members& members, TestStarted& test) {
  test.name = members.text("name");
  test.service = members.text("service");
  test.device = members.text("device");
  test.element = members.text("element");
  test.repetition = members.count("repetition");
  if (members.has("estimate")) test.estimate = members.number("estimate");
}

void read(const Members& members, StepStarted& step) { step.name = members.text("name"); }

void read(const Members& members, Progress& progress) {
  progress.percent = members.number("percent");
}

void read(const Members& members, OutputLine& line) {
  line.stream = members.word<Stream>("stream");
  line.text = members.text("text");
  line.isPart = members.flagOr("part");
}

void read(const Members& members, LogLine& line) {
  const std::int64_t level = members.integer("level");
  if (level < 0 || level > 3) members.fail("level", "is none of 0 to 3");
  line.level = static_cast<int>(level);
  line.text = members.text("text");
}

void read(const Members& members, Message& message) {
  message.severity = members.word<Severity>("severity");
  message.text = members.text("text");
  message.actions = members.textsOr("actions");
}

MeasuredValue measuredValue(const Members& members) {
  const Json& value = members.at("value");
  if (value.is_boolean()) return value.get<bool>();
  if (value.is_string()) return value.get<std::string>();
  return members.number("value");
}

void read(const Members& members, Measurement& measurement) {
  measurement.name = members.text("name");
  measurement.value = measuredValue(members);
  measurement.unit = members.textOr("unit");
  if (members.has("minimum")) measurement.minimum = members.number("minimum");
  if (members.has("maximum")) measurement.maximum = members.number("maximum");
  measurement.part = members.textOr("part");
}

void read(const Members& members, Diagnosis& diagnosis) {
  diagnosis.verdict = members.word<Verdict>("verdict");
  diagnosis.text = members.text("text");
  diagnosis.part = members.textOr("part");
  diagnosis.actions = members.textsOr("actions");
}

void read(const Members& members, Error& error) {
  error.cause = members.word<Cause>("cause");
  error.text = members.text("text");
  if (members.has("code")) error.code = members.integer("code");
  error.provider = members.textOr("provider");
  error.operation = members.textOr("operation");
  error.libraries = members.textsOr("libraries");
  if (members.has("processor")) error.processor = members.count("processor");
}

void read(const Members& members, Ended& end) {
  end.outcome = members.word<Outcome>("outcome");
  end.text = members.textOr("text");
  end.seconds = members.number("seconds");
  end.brief = members.textOr("brief");
  end.remark = members.textOr("remark");
  end.record = members.textOr("record");
}

/// Tries the kind at `index` and those behind it.
template <std::size_t index = 0>
Body bodyFrom(const Members& members) {
  if constexpr (index == std::variant_size_v<Body>) {
    members.fail("", "says nothing that happened");
  } else {
    Body body(std::in_place_index<index>);
    const char* const kind = kindOf(body);
    if (!members.has(kind)) return bodyFrom<index + 1>(members);
    read(Members(members.at(kind), kind), std::get<index>(body));
    return body;
  }
}

Json parsed(std::string_view line) {
  const auto refuseDepth = [](int depth, Json::parse_event_t, Json&) {
    if (depth > kDeepest) throw NoEvent("the event lies too deep");
    return true;
  };
  try {
    return Json::parse(line.begin(), line.end(), refuseDepth);
  } catch (const Json::exception& fault) {
    throw NoEvent(std::string("the line is no JSON: ") + fault.what());
  }
}

}  // namespace

Event eventFrom(std::string_view line) {
  const Json json = parsed(line);
  const Members members(json, "");
  Event event;
  event.sequence = members.count("sequence");
  const std::optional<Time> time = timeFrom(members.text("time"));
  if (!time) members.fail("time", "is no time of day in UTC");
  event.time = *time;
  event.source = members.word<Source>("source");
  if (members.has("testId")) event.test = members.count("testId");
  event.body = bodyFrom(members);
  return event;
}

}  // namespace engine
