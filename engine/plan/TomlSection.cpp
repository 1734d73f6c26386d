#include "engine/plan/TomlSection.h"

#include <algorithm>
#include <utility>

#include "text/CloseMatches.h"

namespace engine {
namespace {

const char* kindOf(const toml::node& node) {
  switch (node.type()) {
    case toml::node_type::table:
      return "a table";
    case toml::node_type::array:
      return "a list";
    case toml::node_type::string:
      return "a text";
    case toml::node_type::integer:
      return "a whole number";
    case toml::node_type::floating_point:
      return "a number";
    case toml::node_type::boolean:
      return "true or false";
    default:
      return "a date or time";
  }
}

}  // namespace

Place placeAt(const std::string& file, const toml::source_region& source) {
  return {file, source.begin.line, source.begin.column};
}

TomlSection::TomlSection(const toml::table& table, const std::string& file, std::string what)
    : m_table(table), m_file(file), m_what(std::move(what)) {}

Place TomlSection::place() const { return placeOf(m_table); }

Place TomlSection::placeOf(const toml::node& node) const { return placeAt(m_file, node.source()); }

void TomlSection::refuseValue(const std::string& key, const toml::node& node,
                              const std::string& expected) const {
  refuse(placeOf(node), key + ": expected " + expected + ", found " + kindOf(node));
}

const toml::node* TomlSection::find(const std::string& key) {
  m_asked.push_back(key);
  return m_table.get(key);
}

std::optional<PlacedText> TomlSection::placedText(const std::string& key) {
  const toml::node* const node = find(key);
  if (!node) return std::nullopt;
  const auto value = node->value_exact<std::string>();
  if (!value) refuseValue(key, *node, "a text in quotes");
  return PlacedText{*value, placeOf(*node)};
}

std::optional<std::string> TomlSection::text(const std::string& key) {
  const auto placed = placedText(key);
  return placed ? std::optional<std::string>(placed->text) : std::nullopt;
}

std::optional<std::uint64_t> TomlSection::number(const std::string& key, std::uint64_t least,
                                                 std::uint64_t most) {
  const toml::node* const node = find(key);
  if (!node) return std::nullopt;
  const std::string range =
      "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
  const auto value = node->value_exact<std::int64_t>();
  if (!value) refuseValue(key, *node, range);
  const auto number = static_cast<std::uint64_t>(*value);
  // What is negative has become larger than any.
  if (number < least || number > most) {
    refuse(placeOf(*node), key + ": expected " + range + ", found " + std::to_string(*value));
  }
  return number;
}

std::optional<double> TomlSection::real(const std::string& key) {
  const toml::node* const node = find(key);
  if (!node) return std::nullopt;
  const auto whole = node->value_exact<std::int64_t>();
  if (whole) return static_cast<double>(*whole);
  const auto value = node->value_exact<double>();
  if (!value) refuseValue(key, *node, "a number");
  if (*value != *value) refuse(placeOf(*node), key + ": expected a number, found nan");
  return value;
}

std::optional<bool> TomlSection::flag(const std::string& key) {
  const toml::node* const node = find(key);
  if (!node) return std::nullopt;
  const auto value = node->value_exact<bool>();
  if (!value) refuseValue(key, *node, "true or false");
  return value;
}

std::optional<Duration> TomlSection::duration(const std::string& key, Duration least) {
  const toml::node* const node = find(key);
  if (!node) return std::nullopt;
  const auto value = node->value_exact<std::string>();
  if (!value) refuseValue(key, *node, "a time in quotes like \"90s\" or \"1h30m\"");
  try {
    const Duration duration = durationFrom(*value);
    if (duration >= least) return duration;
  } catch (const PlanError& error) {
    refuse(placeOf(*node), key + ": " + error.what());
  }
  refuse(placeOf(*node),
         key + ": expected at least " + textOf(least) + ", found \"" + *value + "\"");
}

const toml::table* TomlSection::table(const std::string& key, const char* expected) {
  const toml::node* const node = find(key);
  if (!node) return nullptr;
  if (!node->is_table()) refuseValue(key, *node, expected);
  return node->as_table();
}

std::vector<const toml::table*> TomlSection::tables(const std::string& key) {
  const std::string expected = "tables, each under [[" + key + "]]";
  std::vector<const toml::table*> tables;
  const toml::node* const node = find(key);
  if (!node) return tables;
  if (!node->is_array()) refuseValue(key, *node, expected);
  for (const toml::node& each : *node->as_array()) {
    if (!each.is_table()) refuseValue(key, each, expected);
    tables.push_back(each.as_table());
  }
  return tables;
}

std::vector<PlacedText> TomlSection::texts(const std::string& key) {
  std::vector<PlacedText> texts;
  const toml::node* const node = find(key);
  if (!node) return texts;
  if (const auto* const one = node->as_string()) {
    texts.push_back({one->get(), placeOf(*node)});
    return texts;
  }
  if (!node->is_array()) refuseValue(key, *node, "a list of texts");
  for (const toml::node& each : *node->as_array()) {
    if (!each.is_string()) refuseValue(key, each, "texts in quotes");
    texts.push_back({each.as_string()->get(), placeOf(each)});
  }
  return texts;
}

void TomlSection::finish() const {
  for (const auto& [key, node] : m_table) {
    const std::string name(key.str());
    if (std::find(m_asked.begin(), m_asked.end(), name) != m_asked.end()) continue;
    const std::string close = text::suggestions(name, m_asked);
    refuse(placeAt(m_file, key.source()),
           "unknown key \"" + name + "\" of " + m_what +
               (close.empty() ? "; it may have " + text::quotedList(m_asked) : close));
  }
}

}  // namespace engine
