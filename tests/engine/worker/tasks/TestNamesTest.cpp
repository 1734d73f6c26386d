#include <gtest/gtest.h>

#include <string>

#include "engine/worker/tasks/TestNames.h"

namespace engine::tasks {
namespace {

const std::string kEnd = ", at which identifiers are split: it cannot be run";

struct NameRow {
  const char* service;
  const char* device;
  const char* element;
  std::string why;
};

TEST(TestNames, ATestCanBeNamedAsLongAsNothingSplitsItsTexts) {
  const NameRow rows[] = {
      {"Fan Test", "fan0", "Front Fan", ""},
      {"", "", "", ""},
      {"Fan Test", "fan0", "Fan, in front", ""},
      {"Fan, Test", "fan0", "Fan", "the service's Name has a comma" + kEnd},
      {"Fan|Test", "fan0", "Fan", "the service's Name has a bar" + kEnd},
      {"Fan Test", "fan,0", "Fan", "the element's DeviceID has a comma" + kEnd},
      {"Fan Test", "fan|0", "Fan", "the element's DeviceID has a bar" + kEnd},
      {"Fan Test", "fan0", "Fan|", "the element's ElementName has a bar" + kEnd},
      {",|", "0", "|",
       "the service's Name has a comma; the service's Name has a bar; the element's ElementName "
       "has a bar" +
           kEnd},
  };
  for (const NameRow& row : rows) {
    EXPECT_EQ(whyNotNamed(row.service, row.device, row.element), row.why) << row.service;
  }
}

}  // namespace
}  // namespace engine::tasks
