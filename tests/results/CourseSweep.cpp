#include "tests/results/CourseSweep.h"

#include <gtest/gtest.h>

#include "framework/EVORStatusCode.h"

namespace support {

namespace {

/// What is between `before` and the next quote or parenthesis.
std::string wordAfter(const std::string& text, const std::string& before) {
  const std::size_t start = text.find(before) + before.size();
  return text.substr(start, text.find_first_of("\"(", start) - start);
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// What an exception about the empty handle of the last of `calls` names.
std::string missingAfter(const FaultPoint& point, const std::string& calls) {
  const std::string& call = point.callText;
  if (contains(call, ".GetProperty(")) {
    return "property " + wordAfter(call, ".GetProperty(\"");
  }
  if (contains(call, ".GetInstance(")) {
    return "job instance";
  }
  if (contains(call, ".GetUpcallNamespace(")) {
    return "upcall namespace";
  }
  if (contains(call, ".GetNamespace(")) {
    // Asked right after its name, the class is to lead to the upcall namespace.
    const std::string name = call.substr(0, call.find(".GetNamespace(")) + ".GetName()\n";
    const bool isRetry = contains(calls, name + call + "\n");
    return isRetry ? "CMPI namespace that serves class " + call.substr(6, call.find('.') - 6)
                   : "namespace that serves the class";
  }
  return "class of the referenced instance";
}

void expectPassedOn(const FaultPoint& point, const Outcome& outcome) {
  switch (point.fault) {
    case Fault::vorException:
      EXPECT_EQ(outcome.kind, Outcome::Kind::vorException);
      EXPECT_EQ(outcome.status, NZELVOR20::eVORFailed);
      break;
    case Fault::standardException:
      EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
      EXPECT_EQ(outcome.text, kScriptedFailure);
      break;
    case Fault::otherException:
      EXPECT_EQ(outcome.kind, Outcome::Kind::otherException);
      break;
    case Fault::emptyHandle:
      EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
      EXPECT_EQ(outcome.text, "diagsrunner: no " + missingAfter(point, outcome.calls));
      break;
  }
}

void expectReturned(const CourseEnd& wanted, const Outcome& outcome) {
  std::string text;
  for (const std::string& part : wanted.added) {
    text += part;
  }
  EXPECT_TRUE(outcome.returned());
  EXPECT_EQ(outcome.text, text);
}

}  // namespace

Recovery passOn(const FaultPoint&) { return {}; }

Recover emptyGoesOnAt(const std::string& section, const Recover& otherwise) {
  return [=](const FaultPoint& point) {
    return point.fault == Fault::emptyHandle ? Recovery{{}, section} : otherwise(point);
  };
}

Section detour(const std::string& name, const Events& events, const std::string& adds) {
  return {name, events, passOn, adds, true};
}

void expectCourse(const Course& course, const FaultPoint& point, const Outcome& outcome) {
  const CourseEnd wanted = endAfter(course, point);
  EXPECT_EQ(outcome.all, wanted.journal);
  if (wanted.isWhole) {
    expectReturned(wanted, outcome);
  } else {
    expectPassedOn(point, outcome);
  }
}

void expectCourse(const Course& course, const Outcome& outcome) {
  const CourseEnd wanted = faultlessEnd(course);
  EXPECT_EQ(outcome.all, wanted.journal);
  expectReturned(wanted, outcome);
}

}  // namespace support
