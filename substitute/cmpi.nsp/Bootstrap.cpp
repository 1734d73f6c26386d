#include "substitute/cmpi.nsp/Bootstrap.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include "framework/CMPINSPInstanceRegistry.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/broker/Limits.h"
#include "substitute/cmpi.nsp/broker/WatchedCall.h"
#include "substitute/cmpi.nsp/cache/InstalledSchema.h"
#include "substitute/cmpi.nsp/installation/DataFileCheck.h"
#include "substitute/cmpi.nsp/installation/InstallationRights.h"
#include "substitute/cmpi.nsp/installation/PathForm.h"
#include "substitute/cmpi.nsp/manager/face/CmpiNamespace.h"
#include "substitute/cmpi.nsp/manager/face/ObjectManagerNamespace.h"
#include "substitute/cmpi.nsp/manager/providers/ProviderReport.h"
#include "substitute/cmpi.nsp/registration/InstancePlacement.h"
#include "substitute/cmpi.nsp/registration/RegistrationFolder.h"
#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/vorcore/inmem/InmemNamespace.h"
#include "substitute/vorcore/system/Configuration.h"

namespace substitute {

namespace {

namespace fs = std::filesystem;
using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

std::string requireFolder(const std::string& root) {
  if (cmpinsp::losesItsMachine(fs::u8path(root))) {
    throw TVORException(TVORStatusCode(
        NZELVOR20::eVORNotSupported,
        "installation folder " + root + " in this form: begin it with a drive letter"));
  }
  std::error_code error;
  fs::path folder = fs::absolute(fs::u8path(root), error);
  if (error || !fs::is_directory(folder, error)) {
    throw TVORException(TVORStatusCode(NZELVOR20::eVORNotFound, "installation folder " + root));
  }
  folder = folder.lexically_normal();
  return (folder.has_filename() ? folder : folder.parent_path()).u8string();
}

void configureCore(const Installation& installation, const std::string& root) {
  vorcore::Configuration configuration;
  configuration.root = root;
  configuration.logFile = installation.logFile;
  configuration.logLevel = installation.logLevel;
  configuration.logger = installation.logger;
  configuration.biosId = installation.biosId;
  configuration.overrideBiosId = installation.overrideBiosId;
  configuration.oemBuild = installation.oemBuild;
  vorcore::configure(configuration);
  cmpinsp::setAnswerLimit(installation.answerLimit);
  cmpinsp::setCallWatch(installation.callWatch);
}

void leaveOut(const std::vector<std::string>& names,
              std::vector<cmpinsp::RegisteredProvider>& providers) {
  for (cmpinsp::RegisteredProvider& provider : providers) {
    provider.isLeftOut = std::find(names.begin(), names.end(), provider.name) != names.end();
  }
}

}  // namespace

class Framework::Impl {
 public:
  explicit Impl(const Installation& installation) : m_root(requireFolder(installation.root)) {
    configureCore(installation, m_root);
    m_objectManager = boost::make_shared<cmpinsp::ObjectManagerNamespace>();
    buildNamespaces(
        cmpinsp::readInstalledSchema({folder("schema"), folder("providers")},
                                     installation.schemaCache
                                         ? cmpinsp::cacheFileFor(m_root, installation.cacheFolder)
                                         : std::string()),
        installation.withoutProviders);
    for (const Problem& problem : m_problems) {
      cmpinsp::logLine(cmpinsp::kErrorLevel, "Installation: " + problem.toText());
    }
    for (const Problem& note : m_notes) {
      cmpinsp::logLine(cmpinsp::kTraceLevel, "Installation: " + note.toText());
    }
  }

  /// The registry's instances go first: they may refer to what the providers own.
  ~Impl() { NZELVOR20::CMPINSPInstanceRegistry::GetRegistrySingleton()->ClearInstances(); }

  boost::shared_ptr<NZELVOR20::ICIMNamespace> objectManager() const { return m_objectManager; }
  const std::vector<Problem>& problems() const noexcept { return m_problems; }
  const std::vector<Problem>& notes() const noexcept { return m_notes; }

  std::vector<ProviderInfo> providers(bool load) const {
    std::vector<ProviderInfo> list;
    for (const cmpinsp::ManagedProviderPtr& provider : m_manager->providers()) {
      list.push_back(cmpinsp::describeProvider(*provider, load));
      requireDeclaredClass(list.back());
    }
    return list;
  }

  std::vector<std::string> takeRefusals() const { return m_manager->takeRefusals(); }

  std::vector<Problem> checkDataFiles() const {
    return cmpinsp::checkDataFiles(folder("kfr/data"));
  }

  std::vector<Problem> checkRights() const {
    return cmpinsp::findWhatOthersCanChange(m_root, m_schemaFiles);
  }

  std::vector<std::string> warningsForRoot() const {
    return cmpinsp::warningsForRoot(m_root, m_schemaFiles);
  }

 private:
  std::string folder(const char* name) const {
    return (fs::u8path(m_root) / name).make_preferred().u8string();
  }

  void buildNamespaces(cmpinsp::InstalledSchema schema, const std::vector<std::string>& leftOut) {
    m_problems = std::move(schema.problems);
    m_schemaFiles = std::move(schema.files);
    m_notes = std::move(schema.notes);
    m_classes = schema.classes;
    std::vector<cmpinsp::RegisteredProvider> providers = readRegistrations(schema.units);
    leaveOut(leftOut, providers);
    for (const cmpinsp::RegisteredProvider& provider : providers) {
      reportUndeclaredClasses(provider, *schema.classes);
    }
    m_manager = boost::make_shared<cmpinsp::ObjectManager>(schema.classes, std::move(providers),
                                                           folder("providers"));
    m_objectManager->AddUnderlyingNamespace(
        boost::make_shared<cmpinsp::CmpiNamespace>(m_manager, std::move(schema.qualifiers)));
    m_manager->setStaticInstances(cmpinsp::buildStaticInstances(
        schema.units, *schema.classes, m_objectManager, m_problems, m_notes));
  }

  std::vector<cmpinsp::RegisteredProvider> readRegistrations(
      std::vector<cmpinsp::CompilationUnit>& units) {
    cmpinsp::FolderRegistrations registrations =
        cmpinsp::readRegistrationFolder(folder("providers"), m_problems);
    cmpinsp::placeInstances(registrations.placements, {folder("providers"), folder("schema")},
                            units, m_problems);
    cmpinsp::readRegistrationInstances(units, registrations.classes, m_problems);
    std::vector<cmpinsp::RegisteredProvider> providers =
        cmpinsp::mergeRegistrations(std::move(registrations.classes), m_problems);
    for (const cmpinsp::RegisteredProvider& provider : providers) reportBadLibrary(provider);
    return providers;
  }

  void reportBadLibrary(const cmpinsp::RegisteredProvider& provider) {
    try {
      cmpinsp::libraryFileName(provider.library);
    } catch (const TVORException& error) {
      m_problems.push_back(
          {provider.place.file, provider.place.line, provider.place.column, error.what()});
    }
  }

  /// Without its class a provider's instances are dropped. The life-cycle indications that packages
  /// list are left out: none is delivered.
  void reportUndeclaredClasses(const cmpinsp::RegisteredProvider& provider,
                               const cmpinsp::ClassTable& classes) {
    for (const cmpinsp::Registration& one : provider.classes) {
      if (classes.knows(one.className) || one.interfaces == cmpinsp::kIndicationInterface) continue;
      m_problems.push_back({one.place.file, one.place.line, one.place.column,
                            "no class " + one.className + " is declared, which provider " +
                                provider.name + " is to serve"});
    }
  }

  /// What a provider answers of classes that nobody knows is of little use to anybody. Indications
  /// are never declared.
  void requireDeclaredClass(ProviderInfo& provider) const {
    const auto isKnown = [&](const ServedClass& served) { return m_classes->knows(served.name); };
    const bool isUsable = provider.state == ProviderState::kUsable;
    const bool isForIndications =
        provider.interfaces.size() == 1 &&
        provider.interfaces.front().name ==
            cmpinsp::interfaceNames(cmpinsp::kIndicationInterface).front();
    if (!isUsable || isForIndications ||
        std::any_of(provider.classes.begin(), provider.classes.end(), isKnown)) {
      return;
    }
    provider.state = ProviderState::kIncomplete;
    provider.reason = "none of its classes is declared in a MOF file";
  }

  std::string m_root;
  std::vector<Problem> m_problems;
  std::vector<std::string> m_schemaFiles;
  std::vector<Problem> m_notes;
  boost::shared_ptr<const cmpinsp::ClassTable> m_classes;
  boost::shared_ptr<cmpinsp::ObjectManager> m_manager;
  boost::shared_ptr<cmpinsp::ObjectManagerNamespace> m_objectManager;
};

Framework::Framework(const Installation& installation)
    : m_impl(std::make_unique<Impl>(installation)) {}

Framework::~Framework() = default;

boost::shared_ptr<NZELVOR20::ICIMNamespace> Framework::objectManager() const {
  return m_impl->objectManager();
}

boost::shared_ptr<NZELVOR20::ICIMNamespace> Framework::makeReportNamespace() const {
  return NZELVOR20::TInmemNamespace::make("root/report");
}

const std::vector<Problem>& Framework::problems() const { return m_impl->problems(); }

const std::vector<Problem>& Framework::notes() const { return m_impl->notes(); }

std::vector<ProviderInfo> Framework::providers(bool load) const { return m_impl->providers(load); }

std::vector<std::string> Framework::takeRefusals() const { return m_impl->takeRefusals(); }

std::vector<Problem> Framework::checkDataFiles() const { return m_impl->checkDataFiles(); }

std::vector<Problem> Framework::checkRights() const { return m_impl->checkRights(); }

std::vector<std::string> Framework::warningsForRoot() const { return m_impl->warningsForRoot(); }

}  // namespace substitute
