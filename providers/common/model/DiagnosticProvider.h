#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/common/model/DiagnosticModel.h"
#include "providers/common/runs/JobRegistry.h"

namespace providers {

/// Why an operation is refused; `code` is a CIM status code of DSP0200.
class ProviderError : public std::runtime_error {
 public:
  ProviderError(int code, const std::string& text) : std::runtime_error(text), m_code(code) {}
  int code() const noexcept { return m_code; }

 private:
  int m_code;
};

constexpr int kErrorInvalidParameter = 4;
constexpr int kErrorNotFound = 6;
constexpr int kErrorNotSupported = 7;
constexpr int kErrorMethodNotAvailable = 16;
constexpr int kErrorMethodNotFound = 17;

/// What a method gave back: its return value and its output parameters.
struct MethodResult {
  std::uint32_t returnValue = 0;
  Properties out;
};

/// Which associations are asked for; an empty text asks for all.
struct AssociationQuery {
  std::string associationClass;
  std::string resultClass;
  std::string role;
  std::string resultRole;
};

/// What a broker offers to a provider that answers one of its calls.
class CallServices {
 public:
  virtual ~CallServices() = default;
  /// True when `className` is `ancestor` or one of its subclasses.
  virtual bool isA(const std::string& className, const std::string& ancestor) = 0;
  /// Runs the work on a thread of its own; false when there is none to be had.
  virtual bool launch(std::function<void()> work) = 0;
  /// Writes a line to the log of the broker.
  virtual void remark(const std::string& text) = 0;
};

/// The answers of a family of diagnostics to the operations of a CIM client. Safe to use from any
/// thread.
class DiagnosticProvider {
 public:
  /// The family and the registry outlive the provider.
  DiagnosticProvider(DiagnosticFamily& family, JobRegistry& registry, std::string systemName);

  /// The instances of the class and its subclasses.
  std::vector<Instance> enumerate(const std::string& className, CallServices& services) const;
  /// Throws `ProviderError` when there is no such instance.
  Instance get(const ObjectPath& path) const;
  /// Changes the settings that the runs of a service have where nobody asks for others: those of
  /// `changed` that `names` has, or all. Throws `ProviderError`.
  void modify(const ObjectPath& path, const Properties& changed,
              const std::vector<std::string>* names);
  /// Takes back what was changed.
  void reset() { m_family.reset(); }
  /// Removes a job that has ended, or a record. Throws `ProviderError`.
  void remove(const ObjectPath& path);

  /// The association instances that refer to the path.
  std::vector<Instance> references(const ObjectPath& path, const AssociationQuery& query,
                                   CallServices& services) const;
  /// The paths at the other ends of those.
  std::vector<ObjectPath> associators(const ObjectPath& path, const AssociationQuery& query,
                                      CallServices& services) const;

  /// Throws `ProviderError` when the path or the method is unknown.
  MethodResult invoke(const ObjectPath& path, const std::string& method, const Properties& in,
                      CallServices& services);

 private:
  /// What is asked for: which service on which device, and how.
  struct RunOrder {
    Diagnostic* diagnostic = nullptr;
    Device device;
    RunSettings settings;
    JobRequest request;
  };

  Service& serviceOfSettings(const ObjectPath& path);
  MethodResult invokeOnTest(const Service& service, const std::string& method, const Properties& in,
                            CallServices& services);
  MethodResult invokeOnJob(const Job& job, const std::string& method, const Properties& in);
  MethodResult run(const Service& service, const Properties& in, CallServices& services);
  std::string start(const RunOrder& order, CallServices& services);
  Device chooseDevice(const Service& service, const Properties& in) const;
  RunOrder readOrder(const Service& service, const Properties& in) const;
  bool launch(const std::string& jobId, const RunOrder& order, CallServices& services) noexcept;
  void work(const std::string& jobId, const RunOrder& order);
  MethodResult errorsOf(const Job& job, bool asArray) const;

  DiagnosticFamily& m_family;
  JobRegistry& m_registry;
  DiagnosticModel m_model;
};

}  // namespace providers
