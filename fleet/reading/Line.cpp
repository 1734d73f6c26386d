#include "fleet/reading/Line.h"

#include <array>
#include <nlohmann/json.hpp>

namespace fleet {
namespace {

using Json = nlohmann::json;

/// The objects that are looked into.
enum class Where : std::uint8_t {
  kTop,
  kRun,
  kStep,
  kVersion,
  kArtifact,
  kComponent,
  kContent,
  kElsewhere
};

struct Member {
  Where where;
  std::string_view key;
  std::string Line::*text;  ///< where its text goes; none: it is an object that is looked into
  Where inside = Where::kElsewhere;
  LineKind kind = LineKind::kOther;
};

constexpr std::string Line::*kNoText = nullptr;

constexpr std::array kMembers = {
    Member{Where::kTop, "timestamp", &Line::timestamp},
    Member{Where::kTop, "testStepArtifact", kNoText, Where::kStep},
    Member{Where::kTop, "testRunArtifact", kNoText, Where::kRun},
    Member{Where::kTop, "schemaVersion", kNoText, Where::kVersion, LineKind::kVersion},
    Member{Where::kStep, "testStepId", &Line::step},
    Member{Where::kStep, "measurement", kNoText, Where::kArtifact, LineKind::kMeasurement},
    Member{Where::kStep, "measurementSeriesElement", kNoText, Where::kArtifact,
           LineKind::kSeriesElement},
    Member{Where::kStep, "measurementSeriesStart", kNoText, Where::kArtifact,
           LineKind::kSeriesStart},
    Member{Where::kStep, "testStepStart", kNoText, Where::kArtifact, LineKind::kStepStart},
    Member{Where::kStep, "testStepEnd", kNoText, Where::kArtifact, LineKind::kStepEnd},
    Member{Where::kStep, "diagnosis", kNoText, Where::kArtifact, LineKind::kDiagnosis},
    Member{Where::kStep, "error", kNoText, Where::kArtifact, LineKind::kStepError},
    Member{Where::kStep, "extension", kNoText, Where::kArtifact, LineKind::kExtension},
    Member{Where::kRun, "testRunStart", kNoText, Where::kElsewhere, LineKind::kRunStart},
    Member{Where::kRun, "testRunEnd", kNoText, Where::kArtifact, LineKind::kRunEnd},
    Member{Where::kRun, "error", kNoText, Where::kArtifact, LineKind::kRunError},
    Member{Where::kArtifact, "name", &Line::name},
    Member{Where::kArtifact, "unit", &Line::unit},
    Member{Where::kArtifact, "hardwareInfoId", &Line::hardware},
    Member{Where::kArtifact, "measurementSeriesId", &Line::series},
    Member{Where::kArtifact, "status", &Line::word},
    Member{Where::kArtifact, "type", &Line::word},
    Member{Where::kArtifact, "symptom", &Line::word},
    Member{Where::kArtifact, "result", &Line::second},
    Member{Where::kArtifact, "verdict", &Line::second},
    Member{Where::kArtifact, "message", &Line::message},
    Member{Where::kArtifact, "subcomponent", kNoText, Where::kComponent},
    Member{Where::kArtifact, "content", kNoText, Where::kContent},
    Member{Where::kComponent, "name", &Line::component},
    Member{Where::kContent, "service", &Line::service},
    Member{Where::kContent, "device", &Line::device},
    Member{Where::kContent, "outcome", &Line::outcome},
};

/// The members of each object lie side by side.
struct MemberRange {
  std::size_t begin = 0;
  std::size_t end = 0;
};

constexpr std::size_t kWheres = static_cast<std::size_t>(Where::kElsewhere) + 1;

constexpr std::array<MemberRange, kWheres> rangesOfMembers() {
  std::array<MemberRange, kWheres> ranges{};
  for (std::size_t i = 0; i < kMembers.size(); ++i) {
    MemberRange& range = ranges[static_cast<std::size_t>(kMembers[i].where)];
    if (range.end == 0) range.begin = i;
    range.end = i + 1;
  }
  return ranges;
}

constexpr std::array<MemberRange, kWheres> kRanges = rangesOfMembers();

const Member* memberNamed(Where where, std::string_view key) {
  const MemberRange range = kRanges[static_cast<std::size_t>(where)];
  for (std::size_t i = range.begin; i < range.end; ++i) {
    if (kMembers[i].key == key) return &kMembers[i];
  }
  return nullptr;
}

/// Follows the objects that are looked into, and counts its way through all others.
class Extract final : public nlohmann::json_sax<Json> {
 public:
  explicit Extract(Line& line) : m_line(line) {}

  std::size_t position = 0;

  bool null() override { return true; }
  bool boolean(bool /*flag*/) override { return true; }
  bool number_integer(number_integer_t number) override {
    return take(static_cast<double>(number));
  }
  bool number_unsigned(number_unsigned_t number) override {
    return take(static_cast<double>(number));
  }
  bool number_float(number_float_t number, const string_t& /*digits*/) override {
    return take(number);
  }
  bool string(string_t& value) override {
    if (m_beyond == 0 && m_member != nullptr && m_member->text != nullptr) {
      m_line.*(m_member->text) = value;
    }
    return true;
  }
  bool binary(binary_t& /*value*/) override { return false; }  // JSON has none

  bool start_object(std::size_t /*size*/) override {
    if (m_beyond == 0 && m_depth == 0) {
      m_open[m_depth++] = Where::kTop;
    } else if (m_beyond == 0 && isLookedInto()) {
      if (m_member->kind != LineKind::kOther) m_line.kind = m_member->kind;
      m_open[m_depth++] = m_member->inside;
      m_member = nullptr;
    } else {
      ++m_beyond;
    }
    return true;
  }
  bool end_object() override {
    if (m_beyond > 0) {
      --m_beyond;
    } else {
      --m_depth;
    }
    m_member = nullptr;
    return true;
  }
  bool start_array(std::size_t /*size*/) override {
    ++m_beyond;
    return true;
  }
  bool end_array() override {
    --m_beyond;
    m_member = nullptr;
    return true;
  }

  bool key(string_t& name) override {
    if (m_beyond > 0) return true;
    const Where where = m_open[m_depth - 1];
    m_isValue = where == Where::kArtifact && name == "value";
    m_isMajor = where == Where::kVersion && name == "major";
    m_member = m_isValue || m_isMajor ? nullptr : memberNamed(where, name);
    return true;
  }

  bool parse_error(std::size_t at, const std::string& /*token*/,
                   const Json::exception& /*error*/) override {
    position = at;
    return false;
  }

 private:
  bool isLookedInto() const {
    return m_member != nullptr && m_member->text == nullptr && m_depth < m_open.size();
  }

  bool take(double number) {
    if (m_beyond > 0) return true;
    if (m_isValue) {
      m_line.value = number;
      m_line.hasValue = true;
    } else if (m_isMajor) {
      constexpr double kHighest = 1'000'000;
      m_line.major = number >= 0 && number < kHighest ? static_cast<std::int64_t>(number) : -1;
    }
    return true;
  }

  Line& m_line;
  std::array<Where, 6> m_open{};  ///< the objects that are looked into, around what comes next
  std::size_t m_depth = 0;
  std::uint64_t m_beyond = 0;  ///< how many objects and lists are open in the innermost of them
  const Member* m_member = nullptr;
  bool m_isValue = false;
  bool m_isMajor = false;
};

}  // namespace

void Line::clear() {
  kind = LineKind::kOther;
  major = -1;
  for (std::string Line::*text :
       {&Line::timestamp, &Line::step, &Line::name, &Line::unit, &Line::hardware, &Line::component,
        &Line::series, &Line::word, &Line::second, &Line::message, &Line::service, &Line::device,
        &Line::outcome}) {
    (this->*text).clear();
  }
  value = 0;
  hasValue = false;
}

/// Most of the time that a fleet takes goes by here. The compiler leaves the library's many small
/// steps, one for each byte, as calls unless it is told to put them together. With the sanitizers'
/// checks in each of them it would be at it for a quarter of an hour.
#if !defined(DIAGS_HAS_CHECKS)
[[gnu::flatten]]
#endif
bool readLine(std::string_view text, Line& line, std::size_t& position) {
  line.clear();
  Extract extract(line);
  if (Json::sax_parse(text.data(), text.data() + text.size(), &extract)) return true;
  position = extract.position;
  return false;
}

}  // namespace fleet
