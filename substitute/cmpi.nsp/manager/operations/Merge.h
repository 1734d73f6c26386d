#pragma once

#include <algorithm>
#include <cstddef>
#include <exception>
#include <string>
#include <utility>

#include "substitute/cmpi.nsp/broker/IUpcalls.h"
#include "substitute/cmpi.nsp/manager/operations/PathSet.h"

namespace cmpinsp {

/// Puts the answers of several providers together: what is of another class than asked for is
/// dropped, and of two answers with one path the second. The caller's sink is kept away from the
/// providers: what it throws comes out of `finish`, not through a provider's frames.
class Merge {
 public:
  /// `className` is the class that answers have to be of, exactly when `exact`; empty for any. With
  /// `unique` paths are compared; a single source needs no comparing.
  Merge(const ClassRepository& classes, std::string className, bool exact, bool unique)
      : m_classes(classes), m_className(std::move(className)), m_exact(exact), m_unique(unique) {}

  /// False when nothing more is wanted.
  bool take(const InstanceDataPtr& instance, const InstanceSink& sink) {
    return admits(instance->path) ? deliver([&] { return sink(instance); }) : !m_stopped;
  }
  bool take(const ObjectPath& path, const PathSink& sink) {
    return admits(path) ? deliver([&] { return sink(path); }) : !m_stopped;
  }

  bool stopped() const noexcept { return m_stopped; }
  /// How many answers came, those that were dropped among them.
  std::size_t offered() const noexcept { return m_offered; }

  /// Throws what the sink threw.
  void finish() const {
    if (m_thrown) std::rethrow_exception(m_thrown);
  }

 private:
  bool admits(const ObjectPath& path) {
    ++m_offered;
    if (m_stopped) return false;
    if (!m_className.empty() && !isWanted(path.className)) return false;
    return !m_unique || isNameless(path) || m_seen.insert(path);
  }

  /// An answer that lacks the keys of its class cannot be told from others.
  bool isNameless(const ObjectPath& path) const {
    if (!path.keys.empty()) return false;
    const vorcore::ClassDeclarationPtr declaration = m_classes.find(path.className);
    if (!declaration) return false;
    const auto& properties = declaration->properties;
    return declaration->isOpen ||
           std::any_of(properties.begin(), properties.end(),
                       [](const vorcore::PropertyDeclaration& one) { return one.isKey; });
  }

  /// A class that nobody declared, or nothing above it, cannot be judged.
  bool isWanted(const std::string& className) const {
    if (m_exact) return vorcore::equalNames(className, m_className);
    if (m_classes.isA(className, m_className)) return true;
    const vorcore::ClassDeclarationPtr declaration = m_classes.find(className);
    return !declaration || declaration->isOpen;
  }

  template <typename Call>
  bool deliver(Call call) {
    try {
      m_stopped = !call();
    } catch (...) {
      m_thrown = std::current_exception();
      m_stopped = true;
    }
    return !m_stopped;
  }

  const ClassRepository& m_classes;
  std::string m_className;
  bool m_exact;
  const bool m_unique;
  bool m_stopped = false;
  std::size_t m_offered = 0;
  std::exception_ptr m_thrown;
  PathSet m_seen;
};

}  // namespace cmpinsp
