#include "engine/plan/PlanFile.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>
#include <utility>

#include "engine/plan/CimText.h"
#include "engine/plan/TomlSection.h"
#include "text/ArrayText.h"
#include "text/CloseMatches.h"

namespace engine {
namespace {

constexpr auto kMostSeed = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
/// Less is no time to do anything in.
constexpr Duration kLeastTime = std::chrono::milliseconds(1);

/// With a point or an exponent, so that no integer can be made of it.
std::string realText(double number) {
  char buffer[64];
  const std::string text(buffer, std::to_chars(buffer, std::end(buffer), number).ptr);
  return text.find_first_of(".en") == std::string::npos ? text + ".0" : text;
}

/// A value that is neither a list nor a table as the text of a setting.
std::string plainText(const toml::node& node) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  node.visit([&](const auto& value) {
    using Value = std::decay_t<decltype(value)>;
    if constexpr (toml::is_boolean<Value>) {
      text << (value.get() ? "true" : "false");
    } else if constexpr (toml::is_floating_point<Value>) {
      text << realText(value.get());
    } else if constexpr (toml::is_value<Value>) {
      text << value.get();
    }
  });
  return text.str();
}

class PlanReader {
 public:
  explicit PlanReader(const std::string& file) : m_file(file) {}

  Plan read(const toml::table& table) {
    Plan plan;
    TomlSection section(table, m_file, "a plan");
    plan.title = section.text("title").value_or("");
    readWhen(section, plan);
    readWhat(section, plan);
    readCommon(section, plan);
    Group single;
    readTests(section, single);
    if (!single.tests.empty()) plan.groups.push_back(std::move(single));
    for (const toml::table* const group : section.tables("group")) {
      plan.groups.push_back(readGroup(*group, plan.groups));
    }
    section.finish();
    if (plan.groups.empty()) {
      refuse({m_file, 1, 1}, "the plan names no test: expected [[test]] with a name");
    }
    return plan;
  }

 private:
  void readWhen(TomlSection& section, Plan& plan) {
    plan.deadline = section.duration("deadline", kLeastTime);
    plan.grace = section.duration("grace", Duration(0)).value_or(kDefaultGrace);
    plan.repeat = section.number("repeat", 1, kMostRepetitions);
    plan.repeatFor = section.duration("for", kLeastTime);
    plan.untilFailure = section.flag("until-failure").value_or(false);
    plan.shuffle = section.number("shuffle", 0, kMostSeed);
    plan.jobs = section.number("jobs", 1, kMostJobs).value_or(1);
  }

  void readWhat(TomlSection& section, Plan& plan) {
    plan.quick = section.duration("quick", kLeastTime);
    for (PlacedText& name : section.texts("exclude")) {
      plan.excluded.push_back({std::move(name.text), std::move(name.place)});
    }
    plan.allowDestructive = section.flag("allow-destructive").value_or(false);
    plan.allowDisruptive = section.flag("allow-disruptive").value_or(false);
    plan.allowInteractive = section.flag("interactive").value_or(true);
  }

  /// What is said of a plan, a group and an entry alike.
  template <typename Part>
  void readCommon(TomlSection& section, Part& part) {
    part.timeout = section.duration("timeout", kLeastTime);
    if (const toml::table* const settings = section.table("settings", "a table NAME = VALUE")) {
      part.settings = readSettings(section, *settings);
    }
    if (const toml::table* const limits =
            section.table("limits", "a table NAME = { minimum = ..., maximum = ... }")) {
      part.limits = readLimits(section, *limits);
    }
  }

  void readTests(TomlSection& section, Group& group) {
    for (const toml::table* const table : section.tables("test")) {
      TomlSection test(*table, m_file, "a test");
      group.tests.push_back(readTest(test));
      test.finish();
    }
  }

  PlannedTest readTest(TomlSection& section) {
    PlannedTest test;
    const PlacedText name = requiredName(section);
    test.tests = {name.text, name.place};
    test.isEveryDevice = true;
    test.isOptional = section.flag("optional").value_or(false);
    test.repeat = section.number("repeat", 1, kMostRepetitions).value_or(1);
    readCommon(section, test);
    return test;
  }

  Group readGroup(const toml::table& table, const std::vector<Group>& before) {
    TomlSection section(table, m_file, "a group");
    Group group;
    const PlacedText name = requiredName(section);
    group.name = name.text;
    if (std::any_of(before.begin(), before.end(),
                    [&](const Group& other) { return other.name == group.name; })) {
      refuse(name.place, "name: another group is called \"" + group.name + "\"");
    }
    group.repeat = section.number("repeat", 1, kMostRepetitions).value_or(1);
    group.shuffle = section.number("shuffle", 0, kMostSeed);
    readCommon(section, group);
    readTests(section, group);
    section.finish();
    if (group.tests.empty()) {
      refuse(section.place(),
             "group \"" + group.name + "\" has no test: expected [[group.test]] with a name");
    }
    return group;
  }

  /// With the place of the name itself; a missing one is missed where the table begins.
  static PlacedText requiredName(TomlSection& section) {
    const PlacedText name = section.placedText("name").value_or(PlacedText{"", section.place()});
    if (name.text.empty()) refuse(name.place, "expected name = \"...\"");
    return name;
  }

  std::vector<SettingText> readSettings(const TomlSection& owner, const toml::table& table) {
    std::vector<SettingText> settings;
    for (const auto& [key, node] : table) {
      settings.push_back(
          {std::string(key.str()), settingText(owner, key, node), placeAt(m_file, key.source())});
    }
    inOrder(settings);
    return settings;
  }

  static std::string settingText(const TomlSection& owner, const toml::key& key,
                                 const toml::node& node) {
    const std::string name(key.str());
    if (node.is_table()) owner.refuseValue(name, node, "a value");
    if (!node.is_array()) return plainText(node);
    std::vector<std::string> elements;
    for (const toml::node& each : *node.as_array()) {
      if (each.is_table() || each.is_array()) owner.refuseValue(name, each, "a list of values");
      elements.push_back(plainText(each));
    }
    return text::arrayText(elements);
  }

  std::vector<Limit> readLimits(const TomlSection& owner, const toml::table& table) {
    std::vector<Limit> limits;
    for (const auto& [key, node] : table) {
      const std::string name(key.str());
      if (!node.is_table()) owner.refuseValue(name, node, "{ minimum = ..., maximum = ... }");
      TomlSection section(*node.as_table(), m_file, "a limit");
      Limit limit{name, section.real("minimum"), section.real("maximum"),
                  placeAt(m_file, key.source())};
      section.finish();
      if (!limit.minimum && !limit.maximum) {
        refuse(limit.place, name + ": expected a minimum, a maximum or both");
      }
      if (limit.minimum && limit.maximum && *limit.minimum > *limit.maximum) {
        refuse(limit.place, name + ": the minimum is above the maximum");
      }
      limits.push_back(std::move(limit));
    }
    inOrder(limits);
    return limits;
  }

  /// Tables are sorted by their keys; what was written last has to count.
  template <typename Part>
  static void inOrder(std::vector<Part>& parts) {
    std::stable_sort(parts.begin(), parts.end(), [](const Part& one, const Part& other) {
      return std::make_pair(one.place.line, one.place.column) <
             std::make_pair(other.place.line, other.place.column);
    });
  }

  const std::string& m_file;
};

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool isFileName(const std::string& name) {
  return name.find_first_of("/\\") != std::string::npos || endsWith(name, ".toml");
}

}  // namespace

Plan planFrom(std::string_view text, const std::string& file) {
  if (text.size() > kLongestPlan) {
    throw PlanError(file + ": longer than 1 MiB; this is no plan");
  }
  try {
    const toml::table table = toml::parse(text);
    return PlanReader(file).read(table);
  } catch (const toml::parse_error& error) {
    refuse(placeAt(file, error.source()), std::string(error.description()));
  }
}

Plan openPlan(const std::string& name, const PlanShelf& shelf) {
  if (isFileName(name)) return planFrom(shelf.read(name), name);
  if (std::find(shelf.names.begin(), shelf.names.end(), name) == shelf.names.end()) {
    const std::string close = text::suggestions(name, shelf.names);
    const std::string known = shelf.names.empty() ? "; this installation has none"
                                                  : "; there are " + text::quotedList(shelf.names);
    throw PlanError("unknown plan \"" + name + "\"" + (close.empty() ? known : close) +
                    "; a file is named with its path or .toml");
  }
  const std::string path = shelf.folder + '/' + name + ".toml";
  return planFrom(shelf.read(path), path);
}

}  // namespace engine
