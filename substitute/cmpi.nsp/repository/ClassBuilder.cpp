#include "substitute/cmpi.nsp/repository/ClassBuilder.h"

#include <string>
#include <unordered_map>
#include <utility>

#include "substitute/cmpi.nsp/repository/ClassFlattener.h"

namespace cmpinsp {

namespace {

enum class State : unsigned char { eOpen, eInProgress, eBuilt, eLeftOut };

struct Candidate {
  const ClassSyntax* syntax = nullptr;
  const std::string* file = nullptr;
  State state = State::eOpen;
  FlatClass flat;
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
      if (inserted.second) {
        candidate.syntax = &syntax;
        candidate.file = &unit.file;
        m_order.push_back(&candidate);
      } else if (candidate.syntax->fingerprint != syntax.fingerprint) {
        report(unit.file, syntax,
               "differs from its definition at " + place(candidate) + ", which stays");
      }
    }
  }

  void buildAll() {
    for (Candidate* candidate : m_order) build(*candidate);
  }

 private:
  static std::string place(const Candidate& candidate) {
    return *candidate.file + ":" + std::to_string(candidate.syntax->at.line) + ":" +
           std::to_string(candidate.syntax->at.column);
  }

  void report(const std::string& file, const ClassSyntax& syntax, const std::string& message) {
    m_problems.push_back(
        {file, syntax.at.line, syntax.at.column, "class " + syntax.name + " " + message});
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
    const auto found = m_candidates.find(candidate.syntax->superclass);
    return found == m_candidates.end() ? nullptr : &found->second;
  }

  void finish(Candidate& candidate, bool isCycle) {
    const ClassSyntax& syntax = *candidate.syntax;
    const Candidate* superclass = superclassOf(candidate);
    candidate.state = State::eLeftOut;
    if (isCycle) {
      report(*candidate.file, syntax, "is left out: it or its superclass inherits from itself");
    } else if (superclass == nullptr && !syntax.superclass.empty()) {
      report(*candidate.file, syntax,
             "is left out: its superclass " + syntax.superclass + " is missing");
    } else if (superclass != nullptr && superclass->state != State::eBuilt) {
      report(*candidate.file, syntax,
             "is left out: its superclass " + syntax.superclass + " was left out");
    } else {
      candidate.flat = m_flattener.flatten(syntax, *candidate.file,
                                           superclass == nullptr ? nullptr : &superclass->flat);
      candidate.state = State::eBuilt;
      m_classes.add(candidate.flat.declaration);
    }
  }

  ClassFlattener m_flattener;
  ClassTable& m_classes;
  std::vector<substitute::Problem>& m_problems;
  std::unordered_map<std::string, Candidate, NameHash, NameEqual> m_candidates;
  std::vector<Candidate*> m_order;
};

}  // namespace

void buildClasses(const std::vector<CompilationUnit>& units, const QualifierTable& qualifiers,
                  ClassTable& classes, std::vector<substitute::Problem>& problems) {
  Builder builder(qualifiers, classes, problems);
  for (const CompilationUnit& unit : units) builder.collect(unit);
  builder.buildAll();
}

}  // namespace cmpinsp
