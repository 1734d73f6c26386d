#include "integrations/slurm/ConfigFile.h"

#include <toml++/toml.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "integrations/slurm/OwnFile.h"
#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

constexpr Verb kVerbs[] = {Verb::kHealth, Verb::kProlog, Verb::kEpilog};

[[noreturn]] void refuse(const std::string& file, const toml::source_region& where,
                         const std::string& what) {
  throw SettingError(file + ":" + std::to_string(where.begin.line) + ":" +
                     std::to_string(where.begin.column) + ": " + what);
}

const Key* keyOf(std::string_view name) {
  const std::vector<Key>& keys = settingKeys();
  const auto key =
      std::find_if(keys.begin(), keys.end(), [name](const Key& one) { return one.name == name; });
  return key == keys.end() ? nullptr : &*key;
}

/// As on the command line.
std::string valueOf(const Key& key, const toml::node& node) {
  if (key.kind == Kind::kTruth) {
    if (!node.is_boolean()) throw SettingError(std::string(key.name) + ": true or false is wanted");
    return *node.value<bool>() ? "true" : "false";
  }
  if (!node.is_string()) throw SettingError(std::string(key.name) + ": a text in quotes is wanted");
  return *node.value<std::string>();
}

bool isVerb(std::string_view name) {
  return std::any_of(std::begin(kVerbs), std::end(kVerbs),
                     [name](Verb verb) { return nameOf(verb) == name; });
}

class Reader {
 public:
  explicit Reader(std::string file) : m_file(std::move(file)) {}

  /// The keys of a table; those that are tables are left to whoever knows what they are for.
  void read(const toml::table& table, Settings& settings, bool isTop) const {
    for (const auto& [name, node] : table) {
      if (isTop && isVerb(name.str())) {
        if (!node.is_table()) refuse(m_file, node.source(), "a section is wanted");
        continue;
      }
      const Key* const key = keyOf(name.str());
      if (key == nullptr) {
        refuse(m_file, name.source(), "unknown key \"" + std::string(name.str()) + "\"");
      }
      take(*key, node, settings);
    }
  }

 private:
  void take(const Key& key, const toml::node& node, Settings& settings) const {
    try {
      set(settings, key, valueOf(key, node));
    } catch (const SettingError& error) {
      refuse(m_file, node.source(), error.what());
    }
  }

  std::string m_file;
};

}  // namespace

void readConfig(std::string_view text, const std::string& file, Verb verb, Settings& settings) {
  toml::table table;
  try {
    table = toml::parse(text, file);
  } catch (const toml::parse_error& error) {
    refuse(file, error.source(), std::string(error.description()));
  }
  const Reader reader(file);
  reader.read(table, settings, true);
  for (const Verb one : kVerbs) {
    const toml::table* const section = table[nameOf(one)].as_table();
    Settings others;
    if (section != nullptr) reader.read(*section, one == verb ? settings : others, false);
  }
}

void readConfigFile(const std::string& file, Verb verb, Settings& settings) {
  needOwnFile(file);
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  if (!stream) throw SettingError(file + " cannot be read");
  readConfig(text.str(), file, verb, settings);
}

}  // namespace slurm
