#include "substitute/cmpi.nsp/repository/ClassBuilder.h"

#include <string>
#include <unordered_map>
#include <utility>

#include "substitute/cmpi.nsp/repository/ClassFlattener.h"

namespace cmpinsp {

namespace {

enum class State : unsigned char { eOpen, eInProgress, eBuilt, eLeftOut };

struct Candidate {
  ClassText text;
  Layer layer = Layer::ePackage;
  ClassText other;  ///< the version whose place this one took
  State state = State::eOpen;
  bool isMixed = false;  ///< it or a class above it has a superclass of another version
  vorcore::ClassDeclarationPtr declaration;
  std::size_t missing = 0;  ///< below an undeclared class, its place in the list of those + 1
};

class Builder {
 public:
  Builder(const QualifierTable& qualifiers, ClassTable& classes,
          std::vector<substitute::Problem>& problems)
      : m_flattener(qualifiers, problems), m_classes(classes), m_problems(problems) {}

  void collect(const CompilationUnit& unit) {
    for (const ClassSyntax& syntax : unit.classes) {
      const auto inserted = m_candidates.emplace(syntax.name, Candidate());
      Candidate& candidate = inserted.first->second;
      const ClassText text{&syntax, &unit.file};
      if (inserted.second) {
        candidate.text = text;
        candidate.layer = unit.layer;
        m_order.push_back(&candidate);
      } else if (takesPlace(unit.layer, candidate.layer)) {
        candidate.other = std::exchange(candidate.text, text);
        candidate.layer = unit.layer;
      } else if (takesPlace(candidate.layer, unit.layer)) {
        if (candidate.other.syntax == nullptr) candidate.other = text;
        compare(candidate.other, text);
      } else {
        compare(candidate.text, text);
      }
    }
  }

  std::vector<MissingClass> buildAll() {
    for (Candidate* candidate : m_order) build(*candidate);
    return std::move(m_missing);
  }

 private:
  /// A schema that somebody put into a folder of its own is there to be used instead of the subset.
  static bool takesPlace(Layer layer, Layer other) {
    return layer == Layer::eOwnFolder && other == Layer::eSchema;
  }

  static std::string place(const ClassText& text) {
    return *text.file + ":" + std::to_string(text.syntax->at.line) + ":" +
           std::to_string(text.syntax->at.column);
  }

  void report(const ClassText& text, const std::string& message) {
    m_problems.push_back({*text.file, text.syntax->at.line, text.syntax->at.column,
                          "class " + text.syntax->name + " " + message});
  }

  void compare(const ClassText& first, const ClassText& second) {
    if (first.syntax->fingerprint == second.syntax->fingerprint) return;
    report(second, "differs from its definition at " + place(first) + ", which stays");
  }

  /// Builds the class after those above it; without recursion, since nothing bounds how many there
  /// are.
  void build(Candidate& lowest) {
    std::vector<Candidate*> chain;
    Candidate* next = &lowest;
    while (next != nullptr && next->state == State::eOpen) {
      next->state = State::eInProgress;
      chain.push_back(next);
      next = superclassOf(*next);
    }
    const bool isCycle = next != nullptr && next->state == State::eInProgress;
    for (; !chain.empty(); chain.pop_back()) finish(*chain.back(), isCycle);
  }

  Candidate* superclassOf(const Candidate& candidate) {
    const auto found = m_candidates.find(candidate.text.syntax->superclass);
    return found == m_candidates.end() ? nullptr : &found->second;
  }

  void finish(Candidate& candidate, bool isCycle) {
    const Candidate* superclass = superclassOf(candidate);
    candidate.state = State::eLeftOut;
    if (isCycle) {
      report(candidate.text, "is left out: it or its superclass inherits from itself");
    } else if (superclass != nullptr && superclass->state != State::eBuilt) {
      report(candidate.text,
             "is left out: its superclass " + candidate.text.syntax->superclass + " was left out");
    } else {
      flatten(candidate, superclass);
    }
  }

  void flatten(Candidate& candidate, const Candidate* superclass) {
    ClassParts parts;
    parts.own = candidate.text;
    parts.other = candidate.other;
    if (superclass != nullptr) {
      parts.superclass = superclass->declaration;
      candidate.isMixed = superclass->isMixed || takesPlace(superclass->layer, candidate.layer);
      candidate.missing = superclass->missing;
    } else if (!candidate.text.syntax->superclass.empty()) {
      candidate.missing = missingAbove(candidate.text);
    }
    parts.isMixed = candidate.isMixed && candidate.layer == Layer::eSchema;
    if (candidate.missing != 0) ++m_missing[candidate.missing - 1].classes;
    candidate.declaration = m_flattener.flatten(parts);
    candidate.state = State::eBuilt;
    m_classes.add(candidate.declaration);
  }

  std::size_t missingAbove(const ClassText& text) {
    const auto [known, isNew] = m_missingByName.emplace(text.syntax->superclass, m_missing.size());
    if (isNew) {
      m_missing.push_back(
          {text.syntax->superclass, text.syntax->name, *text.file, text.syntax->at, 0});
    }
    return known->second + 1;
  }

  ClassFlattener m_flattener;
  ClassTable& m_classes;
  std::vector<substitute::Problem>& m_problems;
  std::unordered_map<std::string, Candidate, NameHash, NameEqual> m_candidates;
  std::vector<Candidate*> m_order;
  std::vector<MissingClass> m_missing;
  std::unordered_map<std::string, std::size_t, NameHash, NameEqual> m_missingByName;
};

}  // namespace

std::vector<MissingClass> buildClasses(const std::vector<CompilationUnit>& units,
                                       const QualifierTable& qualifiers, ClassTable& classes,
                                       std::vector<substitute::Problem>& problems) {
  Builder builder(qualifiers, classes, problems);
  for (const CompilationUnit& unit : units) builder.collect(unit);
  return builder.buildAll();
}

}  // namespace cmpinsp
