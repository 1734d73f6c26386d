#include <optional>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/broker/Limits.h"
#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/objects/ArgsObject.h"
#include "substitute/cmpi.nsp/broker/objects/ContextObject.h"
#include "substitute/cmpi.nsp/broker/objects/EnumerationObject.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/objects/ObjectPathObject.h"
#include "substitute/cmpi.nsp/broker/objects/PropertyListObject.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"
#include "substitute/cmpi.nsp/query/DataObject.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::TCIMValue;

/// A provider's property list; none where it wants all.
class WantedProperties {
 public:
  explicit WantedProperties(const char** props) : m_names(namesOf(props)), m_isAll(!props) {}
  PropertyNames names() const { return m_isAll ? nullptr : &m_names; }

 private:
  std::vector<std::string> m_names;
  bool m_isAll;
};

std::string textOf(const char* text) { return text == nullptr ? std::string() : text; }

/// What an upcall needs of its first arguments, all of them checked.
struct Upcall {
  Upcall(const CMPIBroker* cBroker, const CMPIContext* ctx, const CMPIObjectPath* cPath)
      : broker(Broker::of(cBroker)), upcalls(broker), path(bodyOf<ObjectPathBody>(cPath).path) {
    const ContextBody& context = bodyOf<ContextBody>(ctx);
    if (path.className.empty()) {
      throw Failure(CMPI_RC_ERR_INVALID_CLASS, "the path names no class");
    }
    if (!path.nameSpace.empty()) return;
    const TCIMValue* ns = findNamed(context.entries, CMPIInitNameSpace);
    if (ns != nullptr && !ns->IsNull()) path.nameSpace = ns->ToString(10);
  }

  Broker& broker;
  Broker::Upcalls upcalls;
  ObjectPath path;
};

/// Collects what an upcall delivers, up to the limit.
template <typename Item>
class Collector {
 public:
  boost::function<bool(const Item&)> sink() {
    return [this](const Item& item) {
      if (m_items.size() >= answerLimit()) {
        throw Failure(CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED,
                      "more than " + std::to_string(answerLimit()) + " answers");
      }
      m_items.push_back(item);
      return true;
    };
  }
  std::vector<Item> take() { return std::move(m_items); }

 private:
  std::vector<Item> m_items;
};

constexpr CMPIEnumeration* kNoEnumeration = nullptr;

/// `operation(upcall, names, sink)` as an enumeration of instances.
template <typename Operation>
CMPIEnumeration* enumerate(const CMPIBroker* broker, const CMPIContext* ctx,
                           const CMPIObjectPath* path, const char** props, CMPIStatus* st,
                           Operation operation) noexcept {
  return answer(st, kNoEnumeration, [&] {
    Upcall upcall(broker, ctx, path);
    const WantedProperties wanted(props);
    Collector<InstanceDataPtr> found;
    operation(upcall, wanted.names(), found.sink());
    return makeObject(Ownership::kScoped, &upcall.broker,
                      std::make_unique<EnumerationBody>(found.take(), wanted.names()));
  });
}

/// `operation(upcall, sink)` as an enumeration of paths.
template <typename Operation>
CMPIEnumeration* enumeratePaths(const CMPIBroker* broker, const CMPIContext* ctx,
                                const CMPIObjectPath* path, CMPIStatus* st,
                                Operation operation) noexcept {
  return answer(st, kNoEnumeration, [&] {
    Upcall upcall(broker, ctx, path);
    Collector<ObjectPath> found;
    operation(upcall, found.sink());
    return makeObject(Ownership::kScoped, &upcall.broker,
                      std::make_unique<EnumerationBody>(found.take()));
  });
}

// Threads.

CMPIContext* prepareAttachThread(const CMPIBroker* broker, const CMPIContext* ctx) noexcept {
  return answer(nullptr, static_cast<CMPIContext*>(nullptr), [&] {
    return makeObject(Ownership::kCloned, &Broker::of(broker),
                      std::make_unique<ContextBody>(bodyOf<ContextBody>(ctx)));
  });
}

CMPIStatus attachThread(const CMPIBroker* broker, const CMPIContext* ctx) noexcept {
  return perform([&] {
    Handle& context = handleOf(ctx, Kind::kContext);
    Broker& named = Broker::of(broker);
    // The thread works for the provider that prepared its context.
    const bool isOfLibrary =
        context.broker != nullptr && &context.broker->library() == &named.library();
    Broker& own = isOfLibrary ? *context.broker : named;
    // Closed by `detachThread`, or with the thread.
    auto* scope = new Scope(Scope::Reason::kAttached, &own);
    scope->attachedContext = &context;
    if (addAttached(context)) scope->letContextGo = removeAttached;
  });
}

/// The scope that the calling thread is attached with; null where it is not.
Scope* attachedScope() {
  Scope* scope = &innermostScope();
  while (scope != nullptr && scope->reason() == Scope::Reason::kMarked) scope = scope->outer();
  return scope != nullptr && scope->reason() == Scope::Reason::kAttached ? scope : nullptr;
}

CMPIStatus detachThread(const CMPIBroker* broker, const CMPIContext* ctx) noexcept {
  return perform([&] {
    Broker::of(broker);
    Scope* const scope = attachedScope();
    // The thread's own context may be gone by now, if it was that of a call.
    const void* const own = scope == nullptr ? nullptr : scope->attachedContext;
    if (own == nullptr || own != ctx) handleOf(ctx, Kind::kContext);
    if (scope == nullptr) throw Failure(CMPI_RC_ERR_FAILED, "this thread was not attached");
    delete scope;
  });
}

CMPIStatus deliverIndication(const CMPIBroker* broker, const CMPIContext* ctx, const char*,
                             const CMPIInstance* ind) noexcept {
  // Nobody can subscribe, which is no error of the provider's.
  return perform([&] {
    Broker::of(broker);
    handleOf(ctx, Kind::kContext);
    handleOf(ind, Kind::kInstance);
  });
}

// Instances.

CMPIEnumeration* enumerateInstanceNames(const CMPIBroker* broker, const CMPIContext* ctx,
                                        const CMPIObjectPath* classPath, CMPIStatus* st) noexcept {
  return enumeratePaths(broker, ctx, classPath, st, [](Upcall& upcall, const PathSink& sink) {
    upcall.upcalls->enumerateInstanceNames(upcall.path, sink);
  });
}

CMPIInstance* getInstance(const CMPIBroker* broker, const CMPIContext* ctx,
                          const CMPIObjectPath* instPath, const char** props,
                          CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIInstance*>(nullptr), [&] {
    Upcall upcall(broker, ctx, instPath);
    const WantedProperties wanted(props);
    InstanceDataPtr found = upcall.upcalls->getInstance(upcall.path, wanted.names());
    return makeObject(Ownership::kScoped, &upcall.broker,
                      std::make_unique<InstanceBody>(std::move(found), wanted.names()));
  });
}

CMPIObjectPath* createInstance(const CMPIBroker* broker, const CMPIContext* ctx,
                               const CMPIObjectPath* classPath, const CMPIInstance* inst,
                               CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIObjectPath*>(nullptr), [&] {
    Upcall upcall(broker, ctx, classPath);
    const InstanceDataPtr data = bodyOf<InstanceBody>(inst).share();
    return makeObject(
        Ownership::kScoped, &upcall.broker,
        std::make_unique<ObjectPathBody>(upcall.upcalls->createInstance(upcall.path, data)));
  });
}

CMPIStatus modifyInstance(const CMPIBroker* broker, const CMPIContext* ctx,
                          const CMPIObjectPath* instPath, const CMPIInstance* inst,
                          const char** props) noexcept {
  return perform([&] {
    Upcall upcall(broker, ctx, instPath);
    const WantedProperties wanted(props);
    upcall.upcalls->modifyInstance(upcall.path, bodyOf<InstanceBody>(inst).share(), wanted.names());
  });
}

CMPIStatus deleteInstance(const CMPIBroker* broker, const CMPIContext* ctx,
                          const CMPIObjectPath* instPath) noexcept {
  return perform([&] {
    Upcall upcall(broker, ctx, instPath);
    upcall.upcalls->deleteInstance(upcall.path);
  });
}

CMPIEnumeration* execQuery(const CMPIBroker* broker, const CMPIContext* ctx,
                           const CMPIObjectPath* classPath, const char* query, const char* lang,
                           CMPIStatus* st) noexcept {
  return enumerate(broker, ctx, classPath, nullptr, st,
                   [&](Upcall& upcall, PropertyNames, const InstanceSink& sink) {
                     upcall.upcalls->executeQuery(upcall.path, required(query, "the query"),
                                                  textOf(lang), sink);
                   });
}

CMPIEnumeration* enumerateInstances(const CMPIBroker* broker, const CMPIContext* ctx,
                                    const CMPIObjectPath* classPath, const char** props,
                                    CMPIStatus* st) noexcept {
  return enumerate(broker, ctx, classPath, props, st,
                   [](Upcall& upcall, PropertyNames names, const InstanceSink& sink) {
                     upcall.upcalls->enumerateInstances(upcall.path, names, sink);
                   });
}

// Associations.

CMPIEnumeration* associators(const CMPIBroker* broker, const CMPIContext* ctx,
                             const CMPIObjectPath* instPath, const char* assocClass,
                             const char* resultClass, const char* role, const char* resultRole,
                             const char** props, CMPIStatus* st) noexcept {
  return enumerate(broker, ctx, instPath, props, st,
                   [&](Upcall& upcall, PropertyNames names, const InstanceSink& sink) {
                     const AssociationFilter filter = {textOf(assocClass), textOf(resultClass),
                                                       textOf(role), textOf(resultRole)};
                     upcall.upcalls->associators(upcall.path, filter, names, sink);
                   });
}

CMPIEnumeration* associatorNames(const CMPIBroker* broker, const CMPIContext* ctx,
                                 const CMPIObjectPath* instPath, const char* assocClass,
                                 const char* resultClass, const char* role, const char* resultRole,
                                 CMPIStatus* st) noexcept {
  return enumeratePaths(broker, ctx, instPath, st, [&](Upcall& upcall, const PathSink& sink) {
    const AssociationFilter filter = {textOf(assocClass), textOf(resultClass), textOf(role),
                                      textOf(resultRole)};
    upcall.upcalls->associatorNames(upcall.path, filter, sink);
  });
}

CMPIEnumeration* references(const CMPIBroker* broker, const CMPIContext* ctx,
                            const CMPIObjectPath* instPath, const char* resultClass,
                            const char* role, const char** props, CMPIStatus* st) noexcept {
  return enumerate(broker, ctx, instPath, props, st,
                   [&](Upcall& upcall, PropertyNames names, const InstanceSink& sink) {
                     AssociationFilter filter;
                     filter.resultClass = textOf(resultClass);
                     filter.role = textOf(role);
                     upcall.upcalls->references(upcall.path, filter, names, sink);
                   });
}

CMPIEnumeration* referenceNames(const CMPIBroker* broker, const CMPIContext* ctx,
                                const CMPIObjectPath* instPath, const char* resultClass,
                                const char* role, CMPIStatus* st) noexcept {
  return enumeratePaths(broker, ctx, instPath, st, [&](Upcall& upcall, const PathSink& sink) {
    AssociationFilter filter;
    filter.resultClass = textOf(resultClass);
    filter.role = textOf(role);
    upcall.upcalls->referenceNames(upcall.path, filter, sink);
  });
}

// Methods and single properties.

/// `value` as data that lives as long as the call: the answer hangs on arguments of its own.
CMPIData scopedData(Broker& broker, const TCIMValue& value) {
  Handle& parent =
      makeObject(Kind::kArgs, Ownership::kScoped, &broker, std::make_unique<ArgsBody>());
  return dataOf(parent, value);
}

CMPIData invokeMethod(const CMPIBroker* broker, const CMPIContext* ctx,
                      const CMPIObjectPath* target, const char* method, const CMPIArgs* in,
                      CMPIArgs* out, CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Upcall upcall(broker, ctx, target);
    Arguments input;
    if (in != nullptr) input = bodyOf<ArgsBody>(in).values;
    ArgsBody* const taker = out == nullptr ? nullptr : &bodyOf<ArgsBody>(out);
    Arguments output;
    const TCIMValue value = upcall.upcalls->invokeMethod(
        upcall.path, required(method, "the method's name"), input, output);
    if (taker != nullptr) {
      for (auto& argument : output) {
        setNamed(taker->values, argument.first.c_str(), std::move(argument.second));
      }
    }
    return scopedData(upcall.broker, value);
  });
}

CMPIStatus setProperty(const CMPIBroker* broker, const CMPIContext* ctx,
                       const CMPIObjectPath* instPath, const char* name, const CMPIValue* value,
                       CMPIType type) noexcept {
  return perform([&] {
    Upcall upcall(broker, ctx, instPath);
    upcall.upcalls->setProperty(upcall.path, required(name, "the property's name"),
                                readValue(value, type));
  });
}

CMPIData getProperty(const CMPIBroker* broker, const CMPIContext* ctx,
                     const CMPIObjectPath* instPath, const char* name, CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Upcall upcall(broker, ctx, instPath);
    return scopedData(upcall.broker, upcall.upcalls->getProperty(
                                         upcall.path, required(name, "the property's name")));
  });
}

// Filtered forms: without a filter they are the plain ones.

/// The filter of an enumeration; none where the provider left the language or the query out.
class WantedInstances {
 public:
  /// Throws `QueryError`.
  WantedInstances(const char* language, const char* text) {
    if (language == nullptr || text == nullptr || *text == '\0') return;
    m_query = query::parseQuery(query::languageNamed(language), text);
  }

  /// What the operation is to deliver: all properties, where the filter may need them.
  PropertyNames names(PropertyNames wanted) const { return m_query ? nullptr : wanted; }

  InstanceSink picking(const Upcall& upcall, const InstanceSink& sink) const {
    if (!m_query) return sink;
    const ClassRepository& classes = upcall.upcalls->classes();
    return [this, &classes, sink](const InstanceDataPtr& instance) {
      return !query::selects(*m_query, *instance, classes) || sink(instance);
    };
  }

 private:
  std::optional<query::Query> m_query;
};

CMPIEnumeration* enumerateInstancesFiltered(const CMPIBroker* broker, const CMPIContext* ctx,
                                            const CMPIObjectPath* classPath, const char** props,
                                            const char* fLang, const char* fQuery,
                                            CMPIStatus* st) noexcept {
  return enumerate(broker, ctx, classPath, props, st,
                   [&](Upcall& upcall, PropertyNames names, const InstanceSink& sink) {
                     const WantedInstances wanted(fLang, fQuery);
                     upcall.upcalls->enumerateInstances(upcall.path, wanted.names(names),
                                                        wanted.picking(upcall, sink));
                   });
}

CMPIEnumeration* associatorsFiltered(const CMPIBroker* broker, const CMPIContext* ctx,
                                     const CMPIObjectPath* instPath, const char* assocClass,
                                     const char* resultClass, const char* role,
                                     const char* resultRole, const char** props, const char* fLang,
                                     const char* fQuery, CMPIStatus* st) noexcept {
  return enumerate(broker, ctx, instPath, props, st,
                   [&](Upcall& upcall, PropertyNames names, const InstanceSink& sink) {
                     const WantedInstances wanted(fLang, fQuery);
                     const AssociationFilter filter = {textOf(assocClass), textOf(resultClass),
                                                       textOf(role), textOf(resultRole)};
                     upcall.upcalls->associators(upcall.path, filter, wanted.names(names),
                                                 wanted.picking(upcall, sink));
                   });
}

CMPIEnumeration* referencesFiltered(const CMPIBroker* broker, const CMPIContext* ctx,
                                    const CMPIObjectPath* instPath, const char* resultClass,
                                    const char* role, const char** props, const char* fLang,
                                    const char* fQuery, CMPIStatus* st) noexcept {
  return enumerate(broker, ctx, instPath, props, st,
                   [&](Upcall& upcall, PropertyNames names, const InstanceSink& sink) {
                     const WantedInstances wanted(fLang, fQuery);
                     AssociationFilter filter;
                     filter.resultClass = textOf(resultClass);
                     filter.role = textOf(role);
                     upcall.upcalls->references(upcall.path, filter, wanted.names(names),
                                                wanted.picking(upcall, sink));
                   });
}

constexpr unsigned kCapabilities =
    CMPI_MB_InstanceManipulation | CMPI_MB_AssociationTraversal | CMPI_MB_QueryExecution |
    CMPI_MB_QueryNormalization | CMPI_MB_BasicQualifierSupport | CMPI_MB_OSEncapsulationSupport |
    CMPI_MB_MemEnhancements | CMPI_MB_ExtendedError | CMPI_MB_Logging | CMPI_MB_Tracing |
    CMPI_MB_PropertyFiltering | CMPI_MB_CodepageConversion;

}  // namespace

const CMPIBrokerFT kBrokerTable = {kCapabilities,       CMPICurrentVersion,
                                   "cmpi.nsp",          prepareAttachThread,
                                   attachThread,        detachThread,
                                   deliverIndication,   enumerateInstanceNames,
                                   getInstance,         createInstance,
                                   modifyInstance,      deleteInstance,
                                   execQuery,           enumerateInstances,
                                   associators,         associatorNames,
                                   references,          referenceNames,
                                   invokeMethod,        setProperty,
                                   getProperty,         enumerateInstancesFiltered,
                                   associatorsFiltered, referencesFiltered};

}  // namespace cmpinsp::broker
