#include "host/options/Grammar.h"
#include "host/options/Numbers.h"
#include "host/options/Vocabulary.h"

namespace host {

void Grammar::addGlobalOptions() {
  m_rootOption =
      m_app
          .add_option("--root", m_options.root,
                      "The installation directory; else that of the environment variable "
                      "DIAGS_ROOT, else one beside this program")
          ->type_name("DIR");
  m_logOption = m_app.add_option("--log", m_options.logFile, "Append the log to this file")
                    ->type_name("FILE");
  m_logLevelOption = m_app
                         .add_option("--log-level", m_options.logLevel,
                                     "What is logged: 0 errors alone, up to 3 everything")
                         ->type_name("N")
                         ->transform(wholeNumber(0, 3));
  m_biosOption = m_app
                     .add_option("--bios", m_biosId,
                                 "Take this for the firmware's identifier when tests are filtered")
                     ->type_name("ID");
  m_app.add_flag("--no-cache", m_options.noCache,
                 "Read every class definition, and keep nothing for the next time");
}

void Grammar::addLevel(CLI::App& command, const char* description) {
  command.add_option("--level", m_level, description)
      ->type_name("LEVEL")
      ->transform(CLI::IsMember(levelNames(), CLI::ignore_case));
}

}  // namespace host
