#include <cstdarg>
#include <string>

#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/objects/ArgsObject.h"
#include "substitute/cmpi.nsp/broker/objects/ArrayObject.h"
#include "substitute/cmpi.nsp/broker/objects/DateTimeObject.h"
#include "substitute/cmpi.nsp/broker/objects/ErrorObject.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/objects/ObjectPathObject.h"
#include "substitute/cmpi.nsp/broker/objects/PropertyListObject.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/broker/objects/StringObject.h"
#include "substitute/cmpi.nsp/broker/objects/queries/EnumerationFilterObject.h"
#include "substitute/cmpi.nsp/broker/objects/queries/SelectExpObject.h"
#include "substitute/cmpi.nsp/broker/services/Messages.h"
#include "substitute/cmpi.nsp/broker/text/Codepages.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"

namespace cmpinsp::broker {
namespace {

/// A new object of the innermost scope, whose body `make(broker)` makes.
template <typename BodyType, typename Make>
typename BodyType::Object* manufacture(const CMPIBroker* broker, CMPIStatus* st,
                                       Make make) noexcept {
  return answer(st, static_cast<typename BodyType::Object*>(nullptr), [&] {
    Broker& own = Broker::of(broker);
    return makeObject<BodyType>(Ownership::kScoped, &own, make(own));
  });
}

CMPIInstance* newInstance(const CMPIBroker* broker, const CMPIObjectPath* instPath,
                          CMPIStatus* st) noexcept {
  return manufacture<InstanceBody>(broker, st, [&](Broker& own) {
    const ObjectPath& path = bodyOf<ObjectPathBody>(instPath).path;
    if (path.className.empty()) {
      throw Failure(CMPI_RC_ERR_INVALID_CLASS, "the path names no class");
    }
    return std::make_unique<InstanceBody>(own, path);
  });
}

CMPIObjectPath* newObjectPath(const CMPIBroker* broker, const char* ns, const char* className,
                              CMPIStatus* st) noexcept {
  return manufacture<ObjectPathBody>(broker, st, [&](Broker&) {
    ObjectPath path;
    path.nameSpace = namespaceText(ns);
    if (className != nullptr) path.className = repaired(className);
    return std::make_unique<ObjectPathBody>(std::move(path));
  });
}

CMPIArgs* newArgs(const CMPIBroker* broker, CMPIStatus* st) noexcept {
  return manufacture<ArgsBody>(broker, st, [](Broker&) { return std::make_unique<ArgsBody>(); });
}

CMPIString* newString(const CMPIBroker* broker, const char* data, CMPIStatus* st) noexcept {
  return manufacture<StringBody>(broker, st, [&](Broker&) {
    return std::make_unique<StringBody>(repaired(data == nullptr ? "" : data));
  });
}

CMPIArray* newArray(const CMPIBroker* broker, CMPICount size, CMPIType type,
                    CMPIStatus* st) noexcept {
  return manufacture<ArrayBody>(broker, st,
                                [&](Broker&) { return std::make_unique<ArrayBody>(size, type); });
}

CMPIDateTime* newDateTime(const CMPIBroker* broker, CMPIStatus* st) noexcept {
  return manufacture<DateTimeBody>(
      broker, st, [](Broker&) { return std::make_unique<DateTimeBody>(CimDateTime::now()); });
}

CMPIDateTime* newDateTimeFromBinary(const CMPIBroker* broker, CMPIUint64 usec, CMPIBoolean interval,
                                    CMPIStatus* st) noexcept {
  return manufacture<DateTimeBody>(broker, st, [&](Broker&) {
    return std::make_unique<DateTimeBody>(CimDateTime::fromBinary(usec, interval != 0));
  });
}

CMPIDateTime* newDateTimeFromChars(const CMPIBroker* broker, const char* text,
                                   CMPIStatus* st) noexcept {
  return manufacture<DateTimeBody>(broker, st, [&](Broker&) {
    return std::make_unique<DateTimeBody>(CimDateTime::parse(required(text, "the text")));
  });
}

/// The names of what is selected; null where that is everything.
CMPIArray* projectionOf(Broker& broker, const query::Query& query) {
  if (query.selectsAll) return nullptr;
  const std::vector<NZELVOR20::TCIMValue> names(query.properties.begin(), query.properties.end());
  return makeObject(Ownership::kScoped, &broker,
                    std::make_unique<ArrayBody>(NZELVOR20::ECIMType::eString, names));
}

CMPISelectExp* newSelectExp(const CMPIBroker* broker, const char* text, const char* lang,
                            CMPIArray** projection, CMPIStatus* st) noexcept {
  if (projection != nullptr) *projection = nullptr;
  return manufacture<SelectExpBody>(broker, st, [&](Broker& own) {
    auto body = std::make_unique<SelectExpBody>(required(lang, "the query's language"),
                                                required(text, "the query"));
    if (projection != nullptr) *projection = projectionOf(own, *body->query);
    return body;
  });
}

CMPIBoolean classPathIsA(const CMPIBroker* broker, const CMPIObjectPath* classPath,
                         const char* className, CMPIStatus* st) noexcept {
  return answer(st, CMPI_false, [&] {
    Broker& own = Broker::of(broker);
    const std::string& name = bodyOf<ObjectPathBody>(classPath).path.className;
    const std::string ancestor = required(className, "the class name");
    const Broker::Upcalls upcalls(own);
    if (upcalls->classes().isA(name, ancestor)) return CMPI_true;
    for (const std::string& asked : {name, ancestor}) {
      if (!upcalls->classes().knows(asked)) {
        throw Failure(CMPI_RC_ERR_INVALID_CLASS, "class " + asked + " is not declared");
      }
    }
    return CMPI_false;
  });
}

/// Any live object. Throws `Failure` (invalid handle).
const Handle& anyHandle(const void* object) {
  const Handle* handle = findLive(object);
  if (handle == nullptr || handle->ft == nullptr) {
    throw Failure(CMPI_RC_ERR_INVALID_HANDLE, "no live object");
  }
  return *handle;
}

std::string textOf(const Handle& handle) {
  switch (handle.kind) {
    case Kind::kString:
      return bodyOf<StringBody>(handle).copy();
    case Kind::kObjectPath:
      return bodyOf<ObjectPathBody>(handle).path.toText();
    case Kind::kInstance:
      return bodyOf<InstanceBody>(handle).data().path.toText();
    case Kind::kDateTime:
      return bodyOf<DateTimeBody>(handle).time.text;
    case Kind::kArray:
      return bodyOf<ArrayBody>(handle).toValue().ToString(10);
    default:
      return nameOf(handle.kind);
  }
}

/// The kind of any live object, and of the broker that was asked itself.
const char* kindOf(const CMPIBroker* broker, const Broker& own, const void* object) {
  const bool isBroker = object != nullptr && (object == broker || object == own.handle());
  return isBroker ? "CMPIBroker" : nameOf(anyHandle(object).kind);
}

CMPIString* toString(const CMPIBroker* broker, const void* object, CMPIStatus* st) noexcept {
  return manufacture<StringBody>(
      broker, st, [&](Broker&) { return std::make_unique<StringBody>(textOf(anyHandle(object))); });
}

CMPIBoolean isOfType(const CMPIBroker* broker, const void* object, const char* type,
                     CMPIStatus* st) noexcept {
  return answer(st, CMPI_false, [&] {
    const char* kind = kindOf(broker, Broker::of(broker), object);
    return std::string(kind) == required(type, "the type") ? CMPI_true : CMPI_false;
  });
}

CMPIString* getType(const CMPIBroker* broker, const void* object, CMPIStatus* st) noexcept {
  return manufacture<StringBody>(broker, st, [&](const Broker& own) {
    return std::make_unique<StringBody>(kindOf(broker, own, object));
  });
}

/// The default text with its inserts; without them where they cannot be read, since a message is
/// worth more than its parts.
CMPIString* messageOf(const CMPIBroker* broker, const char* format, CMPIStatus* st, CMPICount count,
                      std::va_list& list) noexcept {
  Inserts inserts;
  const CMPIStatus read = perform([&] { inserts = readInserts(count, list); });
  CMPIString* message = manufacture<StringBody>(broker, st, [&](Broker&) {
    return std::make_unique<StringBody>(repaired(resolved(format, inserts)));
  });
  if (read.rc != CMPI_RC_OK && st != nullptr) *st = read;
  return message;
}

CMPIString* getMessage(const CMPIBroker* broker, const char*, const char* defMsg, CMPIStatus* st,
                       CMPICount count, ...) {
  std::va_list list;
  va_start(list, count);
  CMPIString* message = messageOf(broker, defMsg, st, count, list);
  va_end(list);
  return message;
}

CMPIString* getMessage2(const CMPIBroker* broker, const char*, const CMPIMsgFileHandle,
                        const char* defMsg, CMPIStatus* st, CMPICount count, ...) {
  std::va_list list;
  va_start(list, count);
  CMPIString* message = messageOf(broker, defMsg, st, count, list);
  va_end(list);
  return message;
}

/// One line of a provider in the core log.
void log(Broker& broker, int level, const char* topic, const char* text, const CMPIString* str) {
  std::string line = "provider " + broker.providerName() + ": ";
  if (topic != nullptr) line += repaired(topic) + ": ";
  line += text != nullptr ? repaired(text) : textOrNothing(str);
  logLine(level, line);
}

CMPIStatus logMessage(const CMPIBroker* broker, CMPISeverity severity, const char* id,
                      const char* text, const CMPIString* str) noexcept {
  return perform([&] {
    const int number = numberOf(severity);
    int level = 3;
    if (number == CMPI_SEV_ERROR) level = 0;
    if (number == CMPI_SEV_WARNING) level = 1;
    if (number == CMPI_SEV_INFO) level = 2;
    log(Broker::of(broker), level, id, text, str);
  });
}

CMPIStatus trace(const CMPIBroker* broker, CMPILevel, const char* component, const char* text,
                 const CMPIString* str) noexcept {
  return perform([&] { log(Broker::of(broker), 3, component, text, str); });
}

CMPIError* newCMPIError(const CMPIBroker* broker, const char* owner, const char* msgID,
                        const char* msg, const CMPIErrorSeverity sev,
                        const CMPIErrorProbableCause pc, const CMPIrc cimRc,
                        CMPIStatus* st) noexcept {
  return manufacture<ErrorBody>(broker, st, [&](Broker&) {
    auto body = std::make_unique<ErrorBody>();
    if (owner != nullptr) body->texts[ErrorBody::kOwningEntity] = repaired(owner);
    if (msgID != nullptr) body->texts[ErrorBody::kMessageId] = repaired(msgID);
    if (msg != nullptr) body->texts[ErrorBody::kMessage] = repaired(msg);
    body->severity = numberOf(sev);
    body->cause = numberOf(pc);
    body->code = numberOf(cimRc);
    return body;
  });
}

CMPIStatus openMessageFile(const CMPIBroker* broker, const char*, CMPIMsgFileHandle* h) noexcept {
  return perform([&] {
    Broker::of(broker);
    if (h != nullptr) *h = nullptr;
    throw Failure(CMPI_RC_ERR_NOT_FOUND, "there are no translated messages");
  });
}

CMPIStatus closeMessageFile(const CMPIBroker* broker, const CMPIMsgFileHandle h) noexcept {
  return perform([&] {
    Broker::of(broker);
    if (h != nullptr) throw Failure(CMPI_RC_ERR_INVALID_HANDLE, "no open message file");
  });
}

CMPIPropertyList* newPropertyList(const CMPIBroker* broker, const char** props,
                                  CMPIStatus* st) noexcept {
  return manufacture<PropertyListBody>(
      broker, st, [&](Broker&) { return std::make_unique<PropertyListBody>(props); });
}

CMPIString* newStringCP(const CMPIBroker* broker, const char* data, const CMPICodepageID cpid,
                        CMPIStatus* st) noexcept {
  return manufacture<StringBody>(broker, st, [&](Broker&) {
    return std::make_unique<StringBody>(decode(required(data, "the text"), numberOf(cpid)));
  });
}

CMPIEnumerationFilter* newEnumerationFilter(const CMPIBroker* broker, const char* fLang,
                                            const char* fQuery, CMPIStatus* st) noexcept {
  return manufacture<EnumerationFilterBody>(broker, st, [&](Broker&) {
    return std::make_unique<EnumerationFilterBody>(required(fLang, "the query's language"),
                                                   required(fQuery, "the query"));
  });
}

}  // namespace

const CMPIBrokerEncFT kBrokerEncTable = {CMPICurrentVersion,
                                         newInstance,
                                         newObjectPath,
                                         newArgs,
                                         newString,
                                         newArray,
                                         newDateTime,
                                         newDateTimeFromBinary,
                                         newDateTimeFromChars,
                                         newSelectExp,
                                         classPathIsA,
                                         toString,
                                         isOfType,
                                         getType,
                                         getMessage,
                                         logMessage,
                                         trace,
                                         newCMPIError,
                                         openMessageFile,
                                         closeMessageFile,
                                         getMessage2,
                                         newPropertyList,
                                         newStringCP,
                                         newEnumerationFilter};

}  // namespace cmpinsp::broker
