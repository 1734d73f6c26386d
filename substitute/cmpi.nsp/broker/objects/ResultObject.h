#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/broker/IUpcalls.h"
#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"

namespace cmpinsp::broker {

struct ThreadState;

/// Takes what a provider delivers in one call; what the operation does not deliver throws
/// `Failure`. False: no more is wanted.
class Receiver {
 public:
  virtual ~Receiver() = default;
  virtual bool takeInstance(const InstanceDataPtr& instance);
  virtual bool takePath(const ObjectPath& path);
  virtual bool takeValue(const NZELVOR20::TCIMValue& value);
  /// False where the operation has no answer but its status.
  virtual bool wantsAnswers() const noexcept { return true; }
};

/// How one call's delivery stands. Clones of a result share it, and it outlives the call.
struct Delivery {
  Receiver* receiver = nullptr;  ///< null once the call is over
  const ThreadState* thread = nullptr;
  Broker* broker = nullptr;
  const char* operation = "";
  std::string nameSpace;   ///< for paths that come without one
  std::string askedClass;  ///< the class that the operation names
  std::size_t count = 0;
  bool isDone = false;
  bool isStopped = false;      ///< the receiver wants no more
  bool isOverLimit = false;    ///< more answers came than the limit allows
  std::exception_ptr failure;  ///< what the receiver threw
  std::string error;           ///< the first error object's message
  int errorCode = 0;
  std::string fault;  ///< the first answer that was none, in words

  std::string examinedClass;                          ///< of the last answer
  boost::shared_ptr<const ClassShape> examinedShape;  ///< its own; null where nobody declared it
  bool isRemarked = false;  ///< what was odd about an answer was logged already
};

class ResultBody final : public Body {
 public:
  using Object = CMPIResult;
  static constexpr Kind kKind = Kind::kResult;

  explicit ResultBody(std::shared_ptr<Delivery> aDelivery) : delivery(std::move(aDelivery)) {}
  ResultBody(const ResultBody& other) : Body(), delivery(other.delivery) {}

  const std::shared_ptr<Delivery> delivery;
};

}  // namespace cmpinsp::broker
