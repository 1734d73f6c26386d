#pragma once

#include <string>
#include <string_view>

#include "integrations/slurm/Settings.h"

namespace slurm {

/// Where a configuration is looked for unless told otherwise; there need not be one.
constexpr const char* kConfigFile = "/etc/diagsrunner/slurm.toml";

/// Takes over what the text, the content of that file, says for this verb: keys at the top hold for
/// all three, those in [health], [prolog] and [epilog] for one. Throws `SettingError` with file,
/// line and column; a fault in another verb's section is one, too.
void readConfig(std::string_view text, const std::string& file, Verb verb, Settings& settings);

/// The same from a file, which must be root's or this user's own and nobody else may write.
void readConfigFile(const std::string& file, Verb verb, Settings& settings);

}  // namespace slurm
