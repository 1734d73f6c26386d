#pragma once

#include <string>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/objects/ResultObject.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

/// What the operations do with the answers of a provider.
namespace cmpinsp::broker {

/// Tells the classes of an enumeration from others: a provider may deliver more than it was asked
/// for. What nobody declared, or nothing above it, is let pass.
class ClassGate {
 public:
  ClassGate(Broker& broker, std::string wanted)
      : m_broker(broker), m_wanted(std::move(wanted)), m_lastPassed(m_wanted) {}

  bool passes(const std::string& className) {
    if (className == m_lastPassed) return true;
    const auto shape = m_broker.shapeOf(className);
    const bool isOurs = vorcore::equalNames(className, m_wanted) || shape == nullptr ||
                        shape->declaration()->isOpen ||
                        Broker::Upcalls(m_broker)->classes().isA(className, m_wanted);
    if (isOurs) m_lastPassed = className;
    return isOurs;
  }

 private:
  Broker& m_broker;
  std::string m_wanted;
  std::string m_lastPassed;
};

/// Hands instances on, with the wanted properties alone; those of other classes than the gate's,
/// where there is one, are dropped.
class InstanceReceiver final : public Receiver {
 public:
  InstanceReceiver(const InstanceSink& sink, PropertyNames names, ClassGate* gate)
      : m_sink(sink), m_names(names), m_gate(gate) {}

  bool takeInstance(const InstanceDataPtr& instance) override {
    if (m_gate != nullptr && !m_gate->passes(instance->path.className)) return true;
    return m_sink(filtered(instance, m_names));
  }

 private:
  const InstanceSink& m_sink;
  PropertyNames m_names;
  ClassGate* m_gate;
};

/// Hands paths on, and remembers from them the key names of classes whose declaration does not
/// tell them.
class PathReceiver final : public Receiver {
 public:
  PathReceiver(const PathSink& sink, Broker& broker, ClassGate* gate)
      : m_sink(sink), m_broker(broker), m_gate(gate) {}

  bool takePath(const ObjectPath& path) override {
    if (m_gate != nullptr && !m_gate->passes(path.className)) return true;
    if (m_learnt != path.className) {
      const auto shape = m_broker.shapeOf(path.className);
      if (!shape || shape->declaration()->isOpen) m_broker.learnKeys(path);
      m_learnt = path.className;
    }
    return m_sink(path);
  }

 private:
  const PathSink& m_sink;
  Broker& m_broker;
  ClassGate* m_gate;
  std::string m_learnt;
};

/// For operations whose only answer is their status.
class NoAnswer final : public Receiver {
 public:
  bool wantsAnswers() const noexcept override { return false; }
};

/// Keeps the first instance.
class OneInstance final : public Receiver {
 public:
  bool takeInstance(const InstanceDataPtr& instance) override {
    if (!taken) taken = instance;
    return true;
  }
  InstanceDataPtr taken;
};

/// Keeps the first path.
class OnePath final : public Receiver {
 public:
  bool takePath(const ObjectPath& path) override {
    if (taken.className.empty()) taken = path;
    return true;
  }
  ObjectPath taken;
};

/// Keeps a method's return value or a property's value, however the provider delivers it.
class OneValue final : public Receiver {
 public:
  explicit OneValue(Broker& broker) : m_broker(broker) {}

  bool takeValue(const NZELVOR20::TCIMValue& value) override {
    taken = value;
    return isTaken = true;
  }
  bool takeInstance(const InstanceDataPtr& instance) override;
  bool takePath(const ObjectPath& path) override {
    taken = NZELVOR20::TCIMValue(referenceTo(path, m_broker.namespaceHandle()));
    return isTaken = true;
  }
  NZELVOR20::TCIMValue taken;
  bool isTaken = false;  ///< the null value may have been delivered, too

 private:
  Broker& m_broker;
};

}  // namespace cmpinsp::broker
