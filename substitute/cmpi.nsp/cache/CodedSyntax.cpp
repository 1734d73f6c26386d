#include "substitute/cmpi.nsp/cache/CodedSyntax.h"

#include <cstring>
#include <memory>
#include <utility>

namespace cmpinsp {

namespace {

/// More than the MOF reader lets through.
constexpr int kDeepestNesting = 40;

// The smallest number of bytes that each of these takes.
constexpr std::size_t kSmallestUnit = 16;
constexpr std::size_t kSmallestInstance = 24;
constexpr std::size_t kSmallestAssignment = 25;
constexpr std::size_t kSmallestLiteral = 30;

void writePosition(ByteWriter& to, const Position& at) {
  to.u32(at.line);
  to.u32(at.column);
}

Position readPosition(ByteReader& from) {
  Position at;
  at.line = from.u32();
  at.column = from.u32();
  return at;
}

void writeInstance(ByteWriter& to, const InstanceSyntax& instance);
InstanceSyntax readInstance(ByteReader& from, int depth);

void writeLiteral(ByteWriter& to, const Literal& literal) {
  std::uint64_t realBits = 0;
  std::memcpy(&realBits, &literal.real, sizeof realBits);
  to.u8(static_cast<std::uint8_t>(literal.kind));
  to.flags({literal.negative, literal.truth});
  to.u64(literal.magnitude);
  to.u64(realBits);
  to.text(literal.text);
  writePosition(to, literal.at);
  if (literal.kind == LiteralKind::eInstance) writeInstance(to, *literal.instance);
}

Literal readLiteral(ByteReader& from, int depth) {
  Literal literal;
  literal.kind =
      static_cast<LiteralKind>(from.upTo(static_cast<std::uint8_t>(LiteralKind::eInstance)));
  const unsigned flags = from.flags(2);
  literal.negative = (flags & 1U) != 0;
  literal.truth = (flags & 2U) != 0;
  literal.magnitude = from.u64();
  const std::uint64_t realBits = from.u64();
  std::memcpy(&literal.real, &realBits, sizeof realBits);
  literal.text = from.text();
  literal.at = readPosition(from);
  if (literal.kind == LiteralKind::eInstance) {
    literal.instance = std::make_shared<InstanceSyntax>(readInstance(from, depth + 1));
  }
  return literal;
}

void writeAssignment(ByteWriter& to, const AssignmentSyntax& assignment) {
  to.text(assignment.name);
  writePosition(to, assignment.at);
  to.flags({assignment.value.isArray});
  writePosition(to, assignment.value.at);
  to.count(assignment.value.elements.size());
  for (const Literal& element : assignment.value.elements) writeLiteral(to, element);
}

AssignmentSyntax readAssignment(ByteReader& from, int depth) {
  AssignmentSyntax assignment;
  assignment.name = from.text();
  assignment.at = readPosition(from);
  assignment.value.isArray = from.flags(1) != 0;
  assignment.value.at = readPosition(from);
  const std::size_t count = from.count(kSmallestLiteral);
  if (!assignment.value.isArray && count != 1) throw CacheDamage{"a scalar of several values"};
  for (std::size_t i = 0; i < count; ++i) {
    assignment.value.elements.push_back(readLiteral(from, depth));
  }
  return assignment;
}

void writeInstance(ByteWriter& to, const InstanceSyntax& instance) {
  to.text(instance.className);
  to.text(instance.alias);
  to.text(instance.nameSpace);
  writePosition(to, instance.at);
  to.count(instance.assignments.size());
  for (const AssignmentSyntax& assignment : instance.assignments) writeAssignment(to, assignment);
}

InstanceSyntax readInstance(ByteReader& from, int depth) {
  if (depth > kDeepestNesting) throw CacheDamage{"instances are nested too deeply"};
  InstanceSyntax instance;
  instance.className = from.text();
  instance.alias = from.text();
  instance.nameSpace = from.text();
  instance.at = readPosition(from);
  const std::size_t count = from.count(kSmallestAssignment);
  for (std::size_t i = 0; i < count; ++i) {
    instance.assignments.push_back(readAssignment(from, depth));
  }
  return instance;
}

}  // namespace

void writeInstances(ByteWriter& to, const std::vector<CompilationUnit>& units) {
  std::size_t count = 0;
  for (const CompilationUnit& unit : units) count += unit.instances.empty() ? 0 : 1;
  to.count(count);
  for (const CompilationUnit& unit : units) {
    if (unit.instances.empty()) continue;
    to.text(unit.file);
    to.text(unit.askedFor);
    to.u32(unit.aliasScope);
    to.count(unit.instances.size());
    for (const InstanceSyntax& instance : unit.instances) writeInstance(to, instance);
  }
}

std::vector<CompilationUnit> readInstances(ByteReader& from) {
  std::vector<CompilationUnit> units;
  const std::size_t count = from.count(kSmallestUnit);
  for (std::size_t i = 0; i < count; ++i) {
    CompilationUnit unit;
    unit.file = from.text();
    unit.askedFor = from.text();
    unit.aliasScope = from.u32();
    const std::size_t instances = from.count(kSmallestInstance);
    for (std::size_t k = 0; k < instances; ++k) unit.instances.push_back(readInstance(from, 0));
    units.push_back(std::move(unit));
  }
  return units;
}

}  // namespace cmpinsp
