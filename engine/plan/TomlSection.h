#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/plan/Duration.h"
#include "engine/plan/PlanError.h"
#include "engine/plan/Toml.h"

namespace engine {

/// A text, and where it is written.
struct PlacedText {
  std::string text;
  Place place;
};

/// One table of a plan, read key by key. Each reader returns nothing where the key is missing, and
/// throws `PlanError` with file, line and column where its value is none of the kind. `finish`
/// refuses the keys that nobody asked for.
class TomlSection {
 public:
  /// `what` names the table in messages: "a plan", "a test".
  TomlSection(const toml::table& table, const std::string& file, std::string what);

  std::optional<std::string> text(const std::string& key);
  std::optional<PlacedText> placedText(const std::string& key);
  std::optional<std::uint64_t> number(const std::string& key, std::uint64_t least,
                                      std::uint64_t most);
  std::optional<double> real(const std::string& key);
  std::optional<bool> flag(const std::string& key);
  std::optional<Duration> duration(const std::string& key, Duration least);
  /// One table; null where the key is missing.
  const toml::table* table(const std::string& key, const char* expected);
  /// The tables of `[[key]]`.
  std::vector<const toml::table*> tables(const std::string& key);
  /// The elements of an array of texts, or one text, with their places.
  std::vector<PlacedText> texts(const std::string& key);

  void finish() const;

  Place place() const;
  Place placeOf(const toml::node& node) const;
  /// Throws: "KEY: expected EXPECTED, found a number".
  [[noreturn]] void refuseValue(const std::string& key, const toml::node& node,
                                const std::string& expected) const;

 private:
  const toml::node* find(const std::string& key);

  const toml::table& m_table;
  const std::string& m_file;
  std::string m_what;
  std::vector<std::string> m_asked;
};

/// The place of something in a text of TOML.
Place placeAt(const std::string& file, const toml::source_region& source);

}  // namespace engine
