#include <gtest/gtest.h>

#include <string>

#include "engine/protocol/Messages.h"

namespace engine {
namespace {

Request fullRequest() {
  Request request;
  request.task = Task::kRun;
  request.installation.root = "/opt/d \"\\ \n";
  request.installation.logFile = "log";
  request.installation.logLevel = -1;
  request.installation.biosId = "";
  request.installation.schemaCache = false;
  request.installation.withoutProviders = {"A", ""};
  request.test = "S,d,\xff\xfe";
  request.settings = {{"LoopControlParameter", "{\"5\"}"}, {"b", ""}};
  request.threadedMinutes = 71582788;
  request.className = "CIM_Foo";
  request.logLevel = 2;
  request.wantsFacts = true;
  return request;
}

TEST(Protocol, ARequestComesOutAsItWentIn) {
  const Request request = fullRequest();
  const std::string line = lineOf(Order(request));
  EXPECT_EQ(line.find('\n'), std::string::npos);
  const Order order = orderFrom(line);
  const Request& read = std::get<Request>(order);
  EXPECT_EQ(read.task, request.task);
  EXPECT_EQ(read.installation.root, request.installation.root);
  EXPECT_EQ(read.installation.logFile, request.installation.logFile);
  EXPECT_EQ(read.installation.logLevel, request.installation.logLevel);
  EXPECT_EQ(read.installation.biosId, request.installation.biosId);
  EXPECT_EQ(read.installation.schemaCache, request.installation.schemaCache);
  EXPECT_EQ(read.installation.withoutProviders, request.installation.withoutProviders);
  EXPECT_EQ(read.test, request.test) << "bytes that are no UTF-8 name a test, too";
  EXPECT_EQ(read.settings, request.settings);
  EXPECT_EQ(read.threadedMinutes, request.threadedMinutes);
  EXPECT_EQ(read.className, request.className);
  EXPECT_EQ(read.logLevel, request.logLevel);
  EXPECT_EQ(read.wantsFacts, request.wantsFacts);
}

TEST(Protocol, WhatIsNotGivenStaysAway) {
  const Order order = orderFrom(lineOf(Order(Request())));
  EXPECT_FALSE(std::get<Request>(order).installation.biosId);
  EXPECT_FALSE(std::get<Request>(order).threadedMinutes);
}

TEST(Protocol, EveryReplyIsReadAsWhatItIs) {
  OfferedTest test;
  test.identifier = "S,d,e";
  test.estimate = 1.5;
  test.characteristics.isRisky = true;
  test.settings = {{"Seed", "uint32", "7", "what is drawn"}};
  Identity identity;
  identity.parts = {{"disk", "sda", "bay 1", "A", "B", "C", "D"}};
  ProviderFacts provider;
  provider.classes = {{"CIM_A", {"root/cimv2"}}};
  provider.interfaces = {{"instance", "2.0"}};
  const Reply replies[] = {Hello{7},
                           Entered{"P", "enumInstances"},
                           Happened{Source::kProvider, Progress{40}},
                           test,
                           UnusableProvider{"P", "broken", "why"},
                           identity,
                           provider,
                           Finding{Weight::kNote, "x"},
                           Listing{"a|b|"},
                           AnswerLine{"n", "v"},
                           Crashed{-5, "P", "load", {"liba.so"}, 7},
                           Done{DoneStatus::kOutOfMemory, "x"}};
  static_assert(std::size(replies) == std::variant_size_v<Reply>);
  std::size_t kind = 0;
  for (const Reply& reply : replies) {
    const Reply read = replyFrom(lineOf(reply));
    EXPECT_EQ(read.index(), kind++) << lineOf(reply);
    EXPECT_EQ(lineOf(read), lineOf(reply)) << "something was lost";
  }
}

struct BadLine {
  const char* line;
  const char* why;
};

TEST(Protocol, ALineThatMakesNoSenseIsRefused) {
  const BadLine rows[] = {
      {"", "the line is no JSON"},
      {"{", "the line is no JSON"},
      {"\xff", "the line is no JSON"},
      {"[]", "the line is no message"},
      {"7", "the line is no message"},
      {"{}", "the message is of no known kind"},
      {"{\"bye\":{}}", "the message is of no known kind"},
      {"{\"hello\":7}", "\"hello\" is no object"},
      {"{\"hello\":{}}", "\"version\" is missing"},
      {"{\"hello\":{\"version\":-1}}", "\"version\" is no count"},
      {"{\"hello\":{\"version\":\"1\"}}", "\"version\" is no count"},
      {"{\"done\":{\"status\":5,\"text\":\"\"}}", "\"status\" is no known kind"},
      {"{\"done\":{\"status\":0,\"text\":1}}", "\"text\" is no text"},
      {"{\"done\":{\"status\":0,\"text\":{\"hex\":\"0\"}}}", "\"text\" is no text"},
      {"{\"done\":{\"status\":0,\"text\":{\"hex\":\"0g\"}}}", "\"text\" is no text"},
      {"{\"listing\":{\"text\":null}}", "\"text\" is no text"},
      {"{\"crashed\":{\"code\":1,\"provider\":\"\",\"operation\":\"\",\"libraries\":{}}}",
       "\"libraries\" is no array"},
      {"{\"sequence\":0}", "the line is no event"},
  };
  for (const BadLine& row : rows) {
    try {
      replyFrom(row.line);
      ADD_FAILURE() << row.line;
    } catch (const ProtocolError& fault) {
      if (std::string(row.line).find("sequence") == std::string::npos) {
        EXPECT_STREQ(fault.what(), row.why) << row.line;
      }
    }
  }
}

TEST(Protocol, DepthIsRefusedBeforeItCosts) {
  const std::string deep = std::string(1000, '[') + std::string(1000, ']');
  EXPECT_THROW(replyFrom("{\"done\":" + deep + "}"), ProtocolError);
  EXPECT_THROW(orderFrom("{\"request\":" + deep + "}"), ProtocolError);
}

TEST(Coding, TheLineOfWhoHasNoMemoryIsTheMessage) {
  EXPECT_EQ(kOutOfMemoryLine, lineOf(Reply(Done{DoneStatus::kOutOfMemory, ""})));
}

}  // namespace
}  // namespace engine
