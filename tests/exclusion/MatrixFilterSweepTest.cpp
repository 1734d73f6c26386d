#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "tests/exclusion/MatrixWorld.h"
#include "tests/support/Course.h"

/// Every framework call of the filter fails in each of the four ways; each time the whole journal,
/// what propagates and what is left of the list are as the course says.
namespace support {
namespace {

/// Hidden and shown items in turn, with two neighbours hidden.
const std::vector<std::string> kServices = {"hide 1", "a", "hide 2", "hide 3", "b"};

bool isHidden(const std::string& name) { return name.find("hide") != std::string::npos; }

std::string itemSection(std::size_t index) { return "item " + std::to_string(index); }

/// Nothing is caught; an item whose property is empty stays.
Recovery propagate(const FaultPoint&) { return {}; }

/// The events of looking at an item, and of removing it.
std::vector<std::string> looking(const std::string& number, const std::string& path) {
  return {"inst association" + number + ".GetProperty(\"ServiceProvided\", {})",
          "prop association" + number + ".ServiceProvided.GetValue({})",
          "ref " + path + ".GetPath()",
          trace("DiagsRunner::filterDiagsItems serviceProvided OP = " + path)};
}

std::vector<std::string> removing(const std::string& number, const std::string& path) {
  return {"inst association" + number + ".GetObjectPath({})", "ref " + path + ".GetPath()",
          trace("DiagsRunner::filterDiagsItems - erasing: " + path)};
}

/// How the filter should go; what a section adds is the number of an item that is gone.
Course filterCourse(const std::vector<std::string>& beginning) {
  Course course = {
      {"beginning", beginning, {}},
      {"matrix",
       {trace("Entering DiagsRunner::filterDiagsItemsLogger()"), trace("abe1xx -> hide"),
        trace("Leaving DiagsRunner::filterDiagsItemsLogger()")},
       {}}};
  for (std::size_t i = 0; i < kServices.size(); ++i) {
    const std::string number = std::to_string(i + 1);
    course.push_back(
        {itemSection(i), looking(number, servicePath(kServices[i])),
         [next = itemSection(i + 1)](const FaultPoint& point) {
           return point.fault == Fault::emptyHandle ? Recovery{{}, next} : propagate(point);
         }});
    if (isHidden(kServices[i])) {
      course.push_back({"removal of " + itemSection(i),
                        removing(number, itemPath(static_cast<int>(i) + 1)), propagate, number});
    }
  }
  course.push_back(
      {itemSection(kServices.size()), {trace("Leaving DiagsRunner::filterDiagsItems()")}, {}});
  return course;
}

std::unique_ptr<MatrixWorld> makeWorld() {
  auto world = std::make_unique<MatrixWorld>();
  for (const std::string& name : kServices) {
    world->addItem(name);
  }
  world->hide({"hide"});
  world->runner();
  return world;
}

/// The list without the items whose numbers were added to the result.
std::string leftWithout(const std::vector<std::string>& gone) {
  std::string text;
  for (std::size_t i = 1; i <= kServices.size(); ++i) {
    if (std::find(gone.begin(), gone.end(), std::to_string(i)) == gone.end()) {
      text += (text.empty() ? "inst association" : " inst association") + std::to_string(i);
    }
  }
  return text;
}

/// What should leave the operation.
Outcome::Kind propagated(const CourseEnd& end, Fault fault) {
  if (end.isWhole) {
    return Outcome::Kind::returned;
  }
  switch (fault) {
    case Fault::vorException:
      return Outcome::Kind::vorException;
    case Fault::standardException:
      return Outcome::Kind::standardException;
    default:
      return Outcome::Kind::otherException;
  }
}

TEST(SweptFilter, LeavesTheListAsFarAsItCame) {
  const Course course = filterCourse(makeWorld()->beginning());
  const SweepResult swept = faultSweep(
      makeWorld, [](MatrixWorld& world) { return world.filter(), std::string(); },
      [&](const FaultPoint& point, const Outcome& outcome, MatrixWorld& world) {
        const CourseEnd wanted = endAfter(course, point);
        EXPECT_EQ(outcome.kind, propagated(wanted, point.fault));
        EXPECT_EQ(outcome.all, wanted.journal);
        EXPECT_EQ(world.left(), leftWithout(wanted.added));
      });
  EXPECT_EQ(swept.faultless.all, faultlessEnd(course).journal);
  EXPECT_TRUE(swept.faultless.returned());
  EXPECT_EQ(swept.calls, 5 * 3 + 3 * 2);
}

}  // namespace
}  // namespace support
