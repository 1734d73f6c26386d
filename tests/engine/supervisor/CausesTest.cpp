#include <gtest/gtest.h>

#include "engine/supervisor/Causes.h"

namespace engine {
namespace {

struct EndRow {
  ProcessEnd end;
  Cause cause;
  const char* text;
};

TEST(Causes, TheEndOfAProcessHasItsWords) {
  const EndRow rows[] = {
      {{0, 0}, Cause::kExited, "it ended the process by itself, with status 0"},
      {{77, 0}, Cause::kExited, "it ended the process by itself, with status 77"},
      {{0, 11}, Cause::kCrashed, "it crashed: segmentation fault (signal 11)"},
      {{0, 6}, Cause::kCrashed, "it crashed: abort (signal 6)"},
      {{0, 35}, Cause::kCrashed, "it crashed: signal 35"},
      {{0, 9},
       Cause::kKilled,
       "it was killed (signal 9); the system does so where memory runs out"},
      {{0xC0000005, 0}, Cause::kCrashed, "it crashed: access violation (exception 0xC0000005)"},
      {{-1073741819, 0}, Cause::kCrashed, "it crashed: access violation (exception 0xC0000005)"},
      {{0xC0001234, 0}, Cause::kCrashed, "it crashed: exception 0xC0001234"},
  };
  for (const EndRow& row : rows) {
    const Error error = endError(row.end);
    EXPECT_EQ(error.cause, row.cause) << row.text;
    EXPECT_EQ(error.text, row.text);
  }
}

TEST(Causes, ACrashKeepsItsPlaceAndItsLibraries) {
  const Error error = crashError({11, "P", "invokeMethod", {"liba.so", "libc.so.6"}});
  EXPECT_EQ(error.cause, Cause::kCrashed);
  EXPECT_EQ(error.code, 11);
  EXPECT_EQ(error.provider, "P");
  EXPECT_EQ(error.operation, "invokeMethod");
  EXPECT_EQ(error.libraries.size(), 2U);
}

TEST(Causes, ACrashNamesTheProcessorWhereItIsKnown) {
  const Error known = crashError({11, "", "", {}, 5});
  EXPECT_EQ(known.text, "it crashed: segmentation fault (signal 11) on CPU 5");
  EXPECT_EQ(known.processor, std::optional<std::uint64_t>(5));
  const Error unknown = crashError({11, "", "", {}});
  EXPECT_EQ(unknown.text, "it crashed: segmentation fault (signal 11)");
  EXPECT_FALSE(unknown.processor);
}

}  // namespace
}  // namespace engine
