#include "substitute/cmpi.nsp/broker/ResultObject.h"

#include "substitute/cmpi.nsp/broker/ErrorObject.h"
#include "substitute/cmpi.nsp/broker/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/Limits.h"
#include "substitute/cmpi.nsp/broker/ObjectPathObject.h"
#include "substitute/cmpi.nsp/broker/ThreadState.h"
#include "substitute/cmpi.nsp/broker/Values.h"

namespace cmpinsp::broker {

bool Receiver::takeInstance(const InstanceDataPtr&) {
  throw Failure(CMPI_RC_ERR_INVALID_DATA_TYPE, "this operation delivers no instances");
}

bool Receiver::takePath(const ObjectPath&) {
  throw Failure(CMPI_RC_ERR_INVALID_DATA_TYPE, "this operation delivers no object paths");
}

bool Receiver::takeValue(const NZELVOR20::TCIMValue&) {
  throw Failure(CMPI_RC_ERR_INVALID_DATA_TYPE, "this operation delivers no data");
}

namespace {

/// Whether the next answer counts. Throws `Failure` where the provider should stop.
bool takesMore(Delivery& delivery) {
  if (delivery.thread != &threadState()) {
    throw Failure(CMPI_RC_ERR_FAILED, "results can be delivered by the calling thread alone");
  }
  if (delivery.receiver == nullptr) throw Failure(CMPI_RC_ERR_FAILED, "the call is over");
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

/// Hands one answer on; what the receiver throws reaches the caller once the provider returns.
template <typename Take>
CMPIStatus deliver(const CMPIResult* result, Take take) noexcept {
  return perform([&] {
    const std::shared_ptr<Delivery>& delivery = bodyOf<ResultBody>(result).delivery;
    if (!takesMore(*delivery)) return;
    try {
      if (!take(*delivery)) delivery->isStopped = true;
    } catch (const Failure&) {
      throw;
    } catch (...) {
      delivery->failure = std::current_exception();
      throw;
    }
  });
}

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value,
                      const CMPIType type) noexcept {
  return deliver(result, [&](Delivery& delivery) {
    return delivery.receiver->takeValue(readValue(value, type));
  });
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* inst) noexcept {
  return deliver(result, [&](Delivery& delivery) {
    InstanceBody& body = bodyOf<InstanceBody>(inst);
    if (body.data().path.nameSpace.empty()) body.change().path.nameSpace = delivery.nameSpace;
    return delivery.receiver->takeInstance(body.share());
  });
}

CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path) noexcept {
  return deliver(result, [&](Delivery& delivery) {
    const ObjectPath& own = bodyOf<ObjectPathBody>(path).path;
    if (!own.nameSpace.empty()) return delivery.receiver->takePath(own);
    ObjectPath complete = own;
    complete.nameSpace = delivery.nameSpace;
    return delivery.receiver->takePath(complete);
  });
}

CMPIStatus returnDone(const CMPIResult* result) noexcept {
  return perform([&] { bodyOf<ResultBody>(result).delivery->isDone = true; });
}

CMPIStatus returnError(const CMPIResult* result, const CMPIError* err) noexcept {
  return perform([&] {
    Delivery& delivery = *bodyOf<ResultBody>(result).delivery;
    const ErrorBody& body = bodyOf<ErrorBody>(err);
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
