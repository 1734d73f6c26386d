#include "host/options/Options.h"

#include "host/Messages.h"
#include "host/options/Grammar.h"

namespace host {

std::variant<Options, ExitStatus> parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  Grammar grammar(options);
  try {
    grammar.parse(arguments);
  } catch (const CLI::Success& request) {  // --help, --version
    grammar.answer(request);
    return ExitStatus::kPassed;
  } catch (const CLI::ParseError& error) {
    reportError(grammar.explain(error) + " (diags --help tells more)");
    return ExitStatus::kUsage;
  }
  options.commandLine = arguments;
  options.commandLine.insert(options.commandLine.begin(), "diags");
  return options;
}

}  // namespace host
