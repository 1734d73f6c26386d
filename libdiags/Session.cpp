#include "libdiags/Session.h"

#include <algorithm>
#include <cstddef>

#include "engine/installation/InstallationRoot.h"
#include "libdiags/Guard.h"
#include "libdiags/Place.h"

namespace libdiags {
namespace {

std::string textOf(const char* text) { return text == nullptr ? std::string() : std::string(text); }

/// The caller's options, as far as they were known when it was compiled.
diags_options optionsOf(const diags_options* given) {
  diags_options options = {};
  if (given == nullptr) return options;
  // A later interface may have more members; they say nothing to this one.
  if (given->size < offsetof(diags_options, list_seconds) + sizeof given->list_seconds)
    throw Refusal(DIAGS_BAD_ARGUMENT, "the options' size is not that of diags_options");
  options = *given;
  if (options.log_level < 0 || options.log_level > 3)
    throw Refusal(DIAGS_BAD_ARGUMENT, "the options' log level is not between 0 and 3");
  if (!(options.list_seconds >= 0) || options.list_seconds > 86400)
    throw Refusal(DIAGS_BAD_ARGUMENT, "the options' list_seconds are not between 0 and 86400");
  return options;
}

}  // namespace

Asking::Asking(Session& session, engine::Engine& engine) : m_session(session), m_engine(engine) {
  const std::lock_guard<std::mutex> lock(session.mutex);
  session.asking.push_back(&engine);
}

Asking::~Asking() {
  const std::lock_guard<std::mutex> lock(m_session.mutex);
  auto& asking = m_session.asking;
  asking.erase(std::find(asking.begin(), asking.end(), &m_engine));
}

void interrupt(Session& session) {
  const std::lock_guard<std::mutex> lock(session.mutex);
  for (engine::Engine* engine : session.asking) engine->interrupt();
}

std::shared_ptr<Session> openSession(const diags_options* given) {
  const diags_options options = optionsOf(given);
  const std::string own = folderOfThisLibrary();
  auto session = std::make_shared<Session>();
  engine::InstallationOptions& installation = session->options.installation;
  installation.root = engine::findInstallationRoot({textOf(options.root), {}, own});
  installation.logFile = textOf(options.log_file);
  installation.logLevel = options.log_level;
  installation.biosId = textOf(options.bios_id);
  installation.schemaCache = options.no_schema_cache == 0;
  session->options.worker =
      options.worker == nullptr ? engine::findWorker(own) : engine::namedWorker(options.worker);
  if (options.list_seconds > 0) session->options.listSeconds = options.list_seconds;
  return session;
}

}  // namespace libdiags
