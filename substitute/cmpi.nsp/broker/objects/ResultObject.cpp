#include "substitute/cmpi.nsp/broker/objects/ResultObject.h"

#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/broker/Limits.h"
#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"
#include "substitute/cmpi.nsp/broker/objects/ErrorObject.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/objects/ObjectPathObject.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"

namespace cmpinsp::broker {

namespace {

/// An answer that the operation does not deliver: the provider's mistake, not the receiver's.
class WrongKind final : public Failure {
 public:
  explicit WrongKind(const char* kind)
      : Failure(CMPI_RC_ERR_INVALID_DATA_TYPE, std::string("this operation delivers no ") + kind) {}
};

}  // namespace

bool Receiver::takeInstance(const InstanceDataPtr&) { throw WrongKind("instances"); }

bool Receiver::takePath(const ObjectPath&) { throw WrongKind("object paths"); }

bool Receiver::takeValue(const NZELVOR20::TCIMValue&) { throw WrongKind("data"); }

namespace {

/// The delivery of `result`, which nobody locks: it is the calling thread's. Throws `Failure` on
/// another one, and once the call is over.
Delivery& openDelivery(const CMPIResult* result) {
  Delivery& delivery = *bodyOf<ResultBody>(result).delivery;
  if (delivery.thread != &threadState()) {
    throw Failure(CMPI_RC_ERR_FAILED, "results can be delivered by the calling thread alone");
  }
  if (delivery.receiver == nullptr) throw Failure(CMPI_RC_ERR_FAILED, "the call is over");
  return delivery;
}

/// Whether the next answer counts. Throws `Failure` where the provider should stop.
bool takesMore(Delivery& delivery) {
  if (delivery.isDone) return false;
  if (delivery.isStopped || delivery.failure) {
    throw Failure(CMPI_RC_ERR_FAILED, "the caller wants no more");
  }
  if (delivery.count >= answerLimit()) {
    delivery.isOverLimit = true;
    throw Failure(CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED,
                  "more than " + std::to_string(answerLimit()) + " answers");
  }
  ++delivery.count;
  return true;
}

/// Takes down that an answer was none: the call fails, whatever the provider makes of the status.
void noteFault(Delivery& delivery, const Failure& fault) {
  if (delivery.fault.empty()) delivery.fault = std::string("an answer is none: ") + fault.what();
}

/// The body of an answer. Throws `Failure` (invalid handle).
template <typename BodyType>
BodyType& answerOf(Delivery& delivery, const typename BodyType::Object* object) {
  try {
    return bodyOf<BodyType>(object);
  } catch (const Failure& fault) {
    noteFault(delivery, fault);
    throw;
  }
}

NZELVOR20::TCIMValue answerOf(Delivery& delivery, const CMPIValue* value, CMPIType type) {
  try {
    return readValue(value, type);
  } catch (const Failure& fault) {
    noteFault(delivery, fault);
    throw;
  }
}

/// Logs, once a call, what is odd about an answer that counts all the same: the class may have been
/// left out of the schema files, and an instance without its keys can still be read.
void remark(Delivery& delivery, const std::string& what) {
  if (delivery.isRemarked) return;
  delivery.isRemarked = true;
  logLine(1, "provider " + delivery.broker->providerName() + ", " + delivery.operation +
                 ": returned " + what);
}

void examine(Delivery& delivery, const ObjectPath& path) {
  if (path.className != delivery.examinedClass) {
    delivery.examinedClass = path.className;
    const auto shape = delivery.broker->shapeOf(path.className);
    delivery.examinedShape = shape;
    if (!shape && !vorcore::equalNames(path.className, delivery.askedClass)) {
      remark(delivery, "class " + path.className + ", which nobody declared");
    }
  }
  const std::size_t keyCount = delivery.examinedShape ? delivery.examinedShape->keyCount() : 0;
  if (path.keys.size() < keyCount) {
    remark(delivery, path.toText() + ", which lacks keys that its class declares");
  }
}

/// Whether an examined path needs nothing that it came without: a namespace, and its keys spelt as
/// the class declares them.
bool isComplete(const Delivery& delivery, const ObjectPath& path) {
  return !path.nameSpace.empty() &&
         (!delivery.examinedShape || delivery.examinedShape->spellsKeysOf(path));
}

void complete(const Delivery& delivery, ObjectPath& path) {
  if (path.nameSpace.empty()) path.nameSpace = delivery.nameSpace;
  if (delivery.examinedShape) delivery.examinedShape->spellKeysOf(path);
}

/// Hands one answer on; what the receiver throws reaches the caller once the provider returns.
template <typename Take>
void hand(Delivery& delivery, Take take) {
  try {
    if (!take(*delivery.receiver)) delivery.isStopped = true;
  } catch (const WrongKind& fault) {
    noteFault(delivery, fault);
    throw;
  } catch (...) {
    delivery.failure = std::current_exception();
    throw;
  }
}

/// Runs `operation` on the delivery of `result`, unless its answer comes too late to count or is
/// more than was asked for. What was not asked for is not looked at either: the provider has done
/// its work by now, and whoever were told that it failed would do it twice.
template <typename Operation>
CMPIStatus deliver(const CMPIResult* result, Operation operation) noexcept {
  return perform([&] {
    Delivery& delivery = openDelivery(result);
    if (!takesMore(delivery)) return;
    if (delivery.receiver->wantsAnswers()) return operation(delivery);
    remark(delivery, "an answer, which nobody asked for");
  });
}

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value,
                      const CMPIType type) noexcept {
  return deliver(result, [&](Delivery& delivery) {
    const NZELVOR20::TCIMValue data = answerOf(delivery, value, type);
    hand(delivery, [&](Receiver& receiver) { return receiver.takeValue(data); });
  });
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* inst) noexcept {
  return deliver(result, [&](Delivery& delivery) {
    InstanceBody& body = answerOf<InstanceBody>(delivery, inst);
    examine(delivery, body.data().path);
    if (!isComplete(delivery, body.data().path)) complete(delivery, body.change().path);
    hand(delivery, [&](Receiver& receiver) { return receiver.takeInstance(body.share()); });
  });
}

CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path) noexcept {
  return deliver(result, [&](Delivery& delivery) {
    const ObjectPath& own = answerOf<ObjectPathBody>(delivery, path).path;
    examine(delivery, own);
    const bool isWhole = isComplete(delivery, own);
    ObjectPath copy;
    if (!isWhole) complete(delivery, copy = own);
    const ObjectPath& given = isWhole ? own : copy;
    hand(delivery, [&](Receiver& receiver) { return receiver.takePath(given); });
  });
}

CMPIStatus returnDone(const CMPIResult* result) noexcept {
  return perform([&] { openDelivery(result).isDone = true; });
}

CMPIStatus returnError(const CMPIResult* result, const CMPIError* err) noexcept {
  return perform([&] {
    Delivery& delivery = openDelivery(result);
    const ErrorBody& body = answerOf<ErrorBody>(delivery, err);
    if (delivery.errorCode != 0) return;
    delivery.errorCode = body.code == 0 ? CMPI_RC_ERR_FAILED : body.code;
    delivery.error = body.texts[ErrorBody::kMessage].value_or("");
  });
}

}  // namespace

const CMPIResultFT kResultTable = {CMPICurrentVersion, release<ResultBody>, clone<ResultBody>,
                                   returnData,         returnInstance,      returnObjectPath,
                                   returnDone,         returnError};

}  // namespace cmpinsp::broker
