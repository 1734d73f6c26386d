#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <sstream>
#include <thread>

#include "engine/events/EventLine.h"
#include "tests/engine/supervisor/SickEnvironment.h"
#include "tests/libdiags/Objects.h"

namespace host {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr char kSound[] = "[[test]]\nname = \"SOUND Test\"\n";
constexpr char kBoth[] = "[[test]]\nname = \"SICK Test\"\n[[test]]\nname = \"SOUND Test\"\n";

diags_result resultOf(const OwnedRun& run) {
  diags_result result = {};
  result.size = sizeof result;
  EXPECT_EQ(diags_run_wait(run.get(), -1, &result), DIAGS_OK) << diags_last_error();
  return result;
}

/// The sickness of all workers that start while this is there.
class Sickness {
 public:
  explicit Sickness(const char* text) { sick::setVariable("SICKNESS", text); }
  ~Sickness() { sick::setVariable("SICKNESS", ""); }
};

TEST(Interface, TellsItsNumberVersionAndCodes) {
  EXPECT_EQ(diags_interface(), DIAGS_INTERFACE);
  EXPECT_STREQ(diags_version(), DIAGS_VERSION);
  EXPECT_STREQ(diags_code_text(DIAGS_OK), "all right");
  EXPECT_STREQ(diags_code_text(DIAGS_FAILED), "failed");
  EXPECT_STREQ(diags_code_text(DIAGS_INTERRUPTED), "ended by diags_interrupt");
  EXPECT_STREQ(diags_code_text(99), "no code");
  EXPECT_STREQ(diags_code_text(-1), "no code");
}

TEST(Interface, EveryMissingArgumentIsNamed) {
  const OwnedSession session = open();
  ASSERT_TRUE(session) << diags_last_error();
  const OwnedPlan plan = planOf(session, kSound);
  diags_session* newSession = nullptr;
  diags_plan* newPlan = nullptr;
  diags_run* newRun = nullptr;
  char* text = nullptr;
  const auto refused = [](diags_code code, const char* name) {
    EXPECT_EQ(code, DIAGS_BAD_ARGUMENT) << name;
    EXPECT_EQ(diags_last_error(), "the argument \"" + std::string(name) + "\" is NULL");
  };
  refused(diags_open(nullptr, nullptr), "session");
  refused(diags_list(nullptr, &text), "session");
  refused(diags_list(session.get(), nullptr), "json");
  refused(diags_providers(nullptr, &text), "session");
  refused(diags_providers(session.get(), nullptr), "json");
  refused(diags_check(nullptr, &text), "session");
  refused(diags_check(session.get(), nullptr), "json");
  refused(diags_interrupt(nullptr), "session");
  refused(diags_plan_named(nullptr, "quick", &newPlan), "session");
  refused(diags_plan_named(session.get(), nullptr, &newPlan), "name");
  refused(diags_plan_named(session.get(), "quick", nullptr), "plan");
  refused(diags_plan_text(nullptr, kSound, 1, &newPlan), "session");
  refused(diags_plan_text(session.get(), nullptr, 1, &newPlan), "toml");
  refused(diags_plan_text(session.get(), kSound, 1, nullptr), "plan");
  refused(diags_plan_tests(nullptr, nullptr, 0, &newPlan), "session");
  refused(diags_plan_tests(session.get(), nullptr, 1, &newPlan), "names");
  refused(diags_plan_tests(session.get(), nullptr, 0, nullptr), "plan");
  refused(diags_plan_list(nullptr, &text), "plan");
  refused(diags_plan_list(plan.get(), nullptr), "json");
  refused(diags_plan_without(nullptr, nullptr, 0, &newPlan), "plan");
  refused(diags_plan_without(plan.get(), nullptr, 1, &newPlan), "names");
  refused(diags_plan_without(plan.get(), nullptr, 0, nullptr), "without");
  refused(diags_plan_preview(nullptr, &text), "plan");
  refused(diags_plan_preview(plan.get(), nullptr), "text");
  refused(diags_run_start(nullptr, plan.get(), nullptr, nullptr, &newRun), "session");
  refused(diags_run_start(session.get(), nullptr, nullptr, nullptr, &newRun), "plan");
  refused(diags_run_start(session.get(), plan.get(), nullptr, nullptr, nullptr), "run");
  refused(diags_run_next(nullptr, 0, &text), "run");
  refused(diags_run_next_many(nullptr, 0, &text, nullptr), "run");
  refused(diags_run_cancel(nullptr), "run");
  refused(diags_run_wait(nullptr, 0, nullptr), "run");
  EXPECT_EQ(newSession, nullptr);
  EXPECT_EQ(newPlan, nullptr);
  EXPECT_EQ(newRun, nullptr);
  EXPECT_EQ(text, nullptr);
}

TEST(Interface, NothingIsClosedWithoutAnError) {
  diags_close(nullptr);
  diags_plan_close(nullptr);
  diags_free(nullptr);
  EXPECT_EQ(diags_run_close(nullptr), DIAGS_OK);
}

TEST(Interface, AMissingNameAmongSeveralIsNumbered) {
  const OwnedSession session = open();
  const char* const names[] = {"SOUND Test", nullptr};
  diags_plan* plan = nullptr;
  EXPECT_EQ(diags_plan_tests(session.get(), names, 2, &plan), DIAGS_BAD_ARGUMENT);
  EXPECT_STREQ(diags_last_error(), "name 1 of \"names\" is NULL");
}

struct BadOption {
  const char* what;
  void (*change)(diags_options&);
  diags_code code;
  const char* text;
};

class OpenWith : public ::testing::TestWithParam<BadOption> {};

TEST_P(OpenWith, ABadOptionIsRefused) {
  diags_options all = options();
  GetParam().change(all);
  auto* session = reinterpret_cast<diags_session*>(&all);
  EXPECT_EQ(diags_open(&all, &session), GetParam().code);
  EXPECT_EQ(session, nullptr);
  EXPECT_THAT(diags_last_error(), HasSubstr(GetParam().text));
}

const BadOption kBadOptions[] = {
    {"Size", [](diags_options& all) { all.size = 8; }, DIAGS_BAD_ARGUMENT, "size"},
    {"NoSize", [](diags_options& all) { all.size = 0; }, DIAGS_BAD_ARGUMENT, "size"},
    {"Level", [](diags_options& all) { all.log_level = 4; }, DIAGS_BAD_ARGUMENT, "log level"},
    {"Time", [](diags_options& all) { all.list_seconds = -1; }, DIAGS_BAD_ARGUMENT, "list_seconds"},
    {"NoTime", [](diags_options& all) { all.list_seconds = std::strtod("nan", nullptr); },
     DIAGS_BAD_ARGUMENT, "list_seconds"},
    {"Root", [](diags_options& all) { all.root = "/no/such/folder"; }, DIAGS_UNUSABLE,
     "/no/such/folder"},
    {"Worker", [](diags_options& all) { all.worker = "/no/such/worker"; }, DIAGS_UNUSABLE,
     "/no/such/worker"},
};

INSTANTIATE_TEST_SUITE_P(Of, OpenWith, ::testing::ValuesIn(kBadOptions),
                         [](const auto& row) { return row.param.what; });

TEST(Session, ListsItsTestsAndProvidersAndChecksThem) {
  const OwnedSession session = open();
  char* json = nullptr;
  ASSERT_EQ(diags_list(session.get(), &json), DIAGS_OK) << diags_last_error();
  EXPECT_THAT(taken(json), HasSubstr("\"service\": \"SOUND Test\""));
  ASSERT_EQ(diags_providers(session.get(), &json), DIAGS_OK) << diags_last_error();
  EXPECT_THAT(taken(json), HasSubstr("\"name\": \"SOUND"));
  ASSERT_EQ(diags_check(session.get(), &json), DIAGS_OK) << diags_last_error();
  EXPECT_THAT(taken(json), HasSubstr("\"faultless\": "));
}

TEST(APlan, ThatIsWrongIsRefusedWithItsPlace) {
  const OwnedSession session = open();
  const std::string toml = "[[test]]\nname = 1\n";
  diags_plan* plan = nullptr;
  EXPECT_EQ(diags_plan_text(session.get(), toml.data(), toml.size(), &plan), DIAGS_BAD_PLAN);
  EXPECT_EQ(plan, nullptr);
  EXPECT_THAT(diags_last_error(), HasSubstr("the plan:2:"));
  EXPECT_EQ(diags_plan_named(session.get(), "nosuch", &plan), DIAGS_BAD_PLAN);
  EXPECT_THAT(diags_last_error(), HasSubstr("nosuch"));
}

TEST(APlan, IsPreviewedWithoutRunning) {
  const OwnedSession session = open();
  const OwnedPlan plan = planOf(session, kBoth);
  char* text = nullptr;
  ASSERT_EQ(diags_plan_preview(plan.get(), &text), DIAGS_OK) << diags_last_error();
  const std::string preview = taken(text);
  EXPECT_THAT(preview, HasSubstr("SICK Test"));
  EXPECT_THAT(preview, HasSubstr("SOUND Test"));
}

std::string listed(diags_plan* plan) {
  char* json = nullptr;
  EXPECT_EQ(diags_plan_list(plan, &json), DIAGS_OK) << diags_last_error();
  return taken(json);
}

TEST(APlan, TellsItsTestsAndWithoutSomeTheRest) {
  const OwnedSession session = open();
  const OwnedPlan both = planOf(session, kBoth);
  const char* const names[] = {"SICK Test"};
  diags_plan* made = nullptr;
  ASSERT_EQ(diags_plan_without(both.get(), names, 1, &made), DIAGS_OK) << diags_last_error();
  const OwnedPlan rest(made);
  EXPECT_THAT(listed(both.get()), HasSubstr("\"identifier\": \"SICK Test"));
  EXPECT_THAT(listed(rest.get()), HasSubstr("\"identifier\": \"SOUND Test"));
  EXPECT_THAT(listed(rest.get()), Not(HasSubstr("SICK Test")));
  EXPECT_EQ(resultOf(start(session, rest)).passed, 1U);
}

TEST(APlan, TellsHowOftenAndHowLongItsTestsRun) {
  const OwnedSession session = open();
  const OwnedPlan plan =
      planOf(session, "timeout = \"90s\"\n[[test]]\nname = \"S*\"\nrepeat = 3\n");
  EXPECT_THAT(listed(plan.get()), HasSubstr("\"repeat\": 3"));
  EXPECT_THAT(listed(plan.get()), HasSubstr("\"timeout\": 90.0"));
  EXPECT_THAT(listed(plan.get()), HasSubstr("\"skipped\": []"));
}

TEST(APlan, WithATestThatIsNotThereRunsNothing) {
  const OwnedSession session = open();
  const char* const names[] = {"no such test"};
  diags_plan* made = nullptr;
  ASSERT_EQ(diags_plan_tests(session.get(), names, 1, &made), DIAGS_OK);
  const OwnedPlan plan(made);
  EXPECT_FALSE(start(session, plan));
  EXPECT_THAT(diags_last_error(), HasSubstr("no such test"));
  EXPECT_TRUE(start(session, planOf(session, kSound))) << "the session is free for another run";
}

TEST(APlan, OfAnotherSessionIsRefused) {
  const OwnedSession session = open(), other = open();
  EXPECT_FALSE(start(session, planOf(other, kSound)));
  EXPECT_THAT(diags_last_error(), HasSubstr("another session"));
}

TEST(ARun, HandsOutItsEventsInOrderAndThenEnds) {
  const OwnedSession session = open();
  const OwnedRun run = start(session, planOf(session, kSound));
  ASSERT_TRUE(run) << diags_last_error();
  const std::vector<std::string> lines = allEvents(run);
  ASSERT_THAT(lines, Not(IsEmpty()));
  for (std::size_t i = 0; i < lines.size(); ++i)
    EXPECT_EQ(engine::eventFrom(lines[i]).sequence, i) << lines[i];
  EXPECT_TRUE(std::holds_alternative<engine::RunStarted>(engine::eventFrom(lines.front()).body));
  EXPECT_TRUE(std::holds_alternative<engine::Ended>(engine::eventFrom(lines.back()).body));
  char* event = nullptr;
  EXPECT_EQ(diags_run_next(run.get(), -1, &event), DIAGS_END);
  EXPECT_EQ(event, nullptr);
  EXPECT_EQ(resultOf(run).passed, 1U);
}

/// The lines of all events, taken many at a time.
std::vector<std::string> manyEvents(const OwnedRun& run) {
  std::string all;
  char* events = nullptr;
  std::size_t length = 0;
  while (diags_run_next_many(run.get(), -1, &events, &length) == DIAGS_OK) {
    EXPECT_EQ(events[length - 1], '\n');
    all.append(events, length);
    diags_free(events);
  }
  EXPECT_EQ(length, 0U);
  std::vector<std::string> lines;
  std::istringstream in(all);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(ARun, HandsOutManyEventsInOneCall) {
  const OwnedSession session = open();
  const OwnedRun run = start(session, planOf(session, kSound));
  ASSERT_TRUE(run) << diags_last_error();
  char* first = nullptr;
  ASSERT_EQ(diags_run_next(run.get(), -1, &first), DIAGS_OK);
  diags_free(first);
  EXPECT_EQ(diags_run_next_many(run.get(), -1, nullptr, nullptr), DIAGS_BAD_ARGUMENT);
  const std::vector<std::string> lines = manyEvents(run);
  ASSERT_THAT(lines, Not(IsEmpty()));
  for (std::size_t i = 0; i < lines.size(); ++i)
    EXPECT_EQ(engine::eventFrom(lines[i]).sequence, i + 1) << lines[i];
  EXPECT_TRUE(std::holds_alternative<engine::Ended>(engine::eventFrom(lines.back()).body));
  EXPECT_EQ(resultOf(run).passed, 1U);
}

// Catches a host that takes a run for whole whose tests are half missing.
TEST(ARun, TellsOfAProviderThatCannotBeUsed) {
  const Sickness crash("listing:fault");
  const OwnedSession session = open();
  const OwnedRun run = start(session, planOf(session, kSound));
  ASSERT_TRUE(run) << diags_last_error();
  const std::vector<std::string> lines = allEvents(run);
  ASSERT_GT(lines.size(), 1U);
  const engine::Event told = engine::eventFrom(lines[1]);
  ASSERT_TRUE(std::holds_alternative<engine::Message>(told.body)) << lines[1];
  EXPECT_EQ(told.test, 0U);
  EXPECT_THAT(std::get<engine::Message>(told.body).text,
              HasSubstr("tests may be missing: provider SickProvider cannot be used (crashed): "));
  EXPECT_EQ(resultOf(run).passed, 1U);
}

struct Heard {
  std::vector<std::string> events;
  diags_run* run = nullptr;
  std::vector<diags_code> codes;
};

TEST(ARun, GivesEachEventToItsFunctionAndNoneElsewhere) {
  const OwnedSession session = open();
  Heard heard;
  const auto hear = [](void* context, const char* event, std::size_t length) {
    EXPECT_EQ(event[length], '\0');
    static_cast<Heard*>(context)->events.emplace_back(event, length);
  };
  const OwnedRun run = start(session, planOf(session, kSound), hear, &heard);
  ASSERT_TRUE(run) << diags_last_error();
  char* event = nullptr;
  EXPECT_EQ(diags_run_next(run.get(), 0, &event), DIAGS_BAD_ARGUMENT);
  EXPECT_EQ(diags_run_next_many(run.get(), 0, &event, nullptr), DIAGS_BAD_ARGUMENT);
  EXPECT_EQ(resultOf(run).passed, 1U);
  ASSERT_THAT(heard.events, Not(IsEmpty()));
  EXPECT_THAT(heard.events.back(), HasSubstr("\"end\""));
}

// Catches a host that would wait for itself for ever.
TEST(ARun, CannotBeWaitedForByItsOwnFunction) {
  const OwnedSession session = open();
  std::atomic<diags_run*> begun{nullptr};
  static std::vector<diags_code> codes;
  codes.clear();
  const auto hear = [](void* context, const char*, std::size_t) {
    diags_run* const run = static_cast<std::atomic<diags_run*>*>(context)->load();
    if (run == nullptr || !codes.empty()) return;
    codes = {diags_run_wait(run, -1, nullptr), diags_run_close(run)};
  };
  const Sickness slow("thread:loop");
  const OwnedRun run = start(session, planOf(session, kBoth), hear, &begun);
  ASSERT_TRUE(run) << diags_last_error();
  begun = run.get();
  while (diags_run_wait(run.get(), 10, nullptr) == DIAGS_TIMEOUT) diags_run_cancel(run.get());
  EXPECT_THAT(codes, ::testing::ElementsAre(DIAGS_BUSY, DIAGS_BUSY));
}

TEST(ASession, HasOneRunAtATime) {
  const OwnedSession session = open();
  const OwnedPlan plan = planOf(session, kSound);
  OwnedRun run = start(session, plan);
  ASSERT_TRUE(run) << diags_last_error();
  EXPECT_FALSE(start(session, plan));
  EXPECT_THAT(diags_last_error(), HasSubstr("the session has a run"));
  run.reset();
  EXPECT_TRUE(start(session, plan)) << diags_last_error();
}

TEST(ARun, OutlivesItsSessionAndPlan) {
  OwnedSession session = open();
  OwnedPlan plan = planOf(session, kSound);
  const OwnedRun run = start(session, plan);
  plan.reset();
  session.reset();
  EXPECT_THAT(allEvents(run), Not(IsEmpty()));
  EXPECT_EQ(resultOf(run).passed, 1U);
}

TEST(ARun, CrashesItsTestAloneAndNotItsHost) {
  const Sickness crash("starting:fault");
  const OwnedSession session = open();
  const OwnedRun run = start(session, planOf(session, kBoth));
  ASSERT_TRUE(run) << diags_last_error();
  EXPECT_THAT(allEvents(run), Not(IsEmpty()));
  const diags_result result = resultOf(run);
  EXPECT_EQ(result.broken, 1U);
  EXPECT_EQ(result.passed, 1U);
}

TEST(ARun, IsCancelledFromAnotherThread) {
  const Sickness slow("thread:loop");
  const OwnedSession session = open();
  const OwnedRun run = start(session, planOf(session, kBoth));
  ASSERT_TRUE(run) << diags_last_error();
  std::thread other([&run] {
    diags_run_cancel(run.get());
    diags_run_cancel(run.get());
  });
  EXPECT_THAT(allEvents(run), Not(IsEmpty()));
  other.join();
  const diags_result result = resultOf(run);
  EXPECT_NE(result.was_cancelled, 0);
  EXPECT_EQ(result.passed, 0U);
}

TEST(ARun, ThatIsClosedEndsWithAllThatItStarted) {
  const Sickness slow("thread:loop");
  const OwnedSession session = open();
  OwnedRun run = start(session, planOf(session, kBoth));
  ASSERT_TRUE(run) << diags_last_error();
  char* event = nullptr;
  ASSERT_EQ(diags_run_next(run.get(), -1, &event), DIAGS_OK);
  diags_free(event);
  EXPECT_EQ(diags_run_close(run.release()), DIAGS_OK);
  for (int i = 0; i < 200 && sick::countMarked() > 0; ++i) sick::pauseBriefly();
  EXPECT_EQ(sick::countMarked(), 0U);
}

TEST(ARun, ToldToWaitBrieflySaysThatItIsNotOver) {
  const Sickness slow("thread:loop");
  const OwnedSession session = open();
  const OwnedRun run = start(session, planOf(session, kBoth));
  ASSERT_TRUE(run) << diags_last_error();
  EXPECT_EQ(diags_run_wait(run.get(), 0, nullptr), DIAGS_TIMEOUT);
  diags_result result = {};
  EXPECT_EQ(diags_run_wait(run.get(), 0, &result), DIAGS_BAD_ARGUMENT) << "without its size";
}

/// Ends what the session asks as soon as a worker is up for it. On Windows nobody tells that one
/// is: there it is tried until something was ended.
class Interrupter {
 public:
  explicit Interrupter(const OwnedSession& session)
      : m_thread([this, &session] {
          while (!m_isOver) {
            sick::pauseBriefly();
#if !defined(_WIN32)
            if (sick::countMarked() == 0) continue;
#endif
            EXPECT_EQ(diags_interrupt(session.get()), DIAGS_OK);
          }
        }) {
  }
  Interrupter(const Interrupter&) = delete;
  Interrupter& operator=(const Interrupter&) = delete;
  ~Interrupter() {
    m_isOver = true;
    m_thread.join();
  }

 private:
  std::atomic<bool> m_isOver{false};
  std::thread m_thread;
};

// Catches a host that a provider which hangs while it is listed holds for a minute.
TEST(ASession, WhoseListingHangsIsInterrupted) {
  const OwnedSession session = open();
  ASSERT_TRUE(session) << diags_last_error();
  {
    const Sickness hang("listing:loop");
    const Interrupter other(session);
    char* json = nullptr;
    EXPECT_EQ(diags_list(session.get(), &json), DIAGS_INTERRUPTED);
    EXPECT_EQ(json, nullptr);
    EXPECT_STRNE(diags_last_error(), "");
  }
  for (int i = 0; i < 200 && sick::countMarked() > 0; ++i) sick::pauseBriefly();
  EXPECT_EQ(sick::countMarked(), 0U);
  char* json = nullptr;
  EXPECT_EQ(diags_list(session.get(), &json), DIAGS_OK) << "only what was under way is interrupted";
  diags_free(json);
}

TEST(ASession, WhoseListingForARunHangsIsInterruptedAndFreeForAnother) {
  const OwnedSession session = open();
  ASSERT_TRUE(session) << diags_last_error();
  const OwnedPlan plan = planOf(session, kSound);
  {
    const Sickness hang("listing:loop");
    const Interrupter other(session);
    diags_run* run = nullptr;
    EXPECT_EQ(diags_run_start(session.get(), plan.get(), nullptr, nullptr, &run),
              DIAGS_INTERRUPTED);
    EXPECT_EQ(run, nullptr);
  }
  EXPECT_TRUE(start(session, plan)) << diags_last_error();
}

TEST(ASession, WithoutACallUnderWayHasNothingToInterrupt) {
  const OwnedSession session = open();
  ASSERT_TRUE(session) << diags_last_error();
  EXPECT_EQ(diags_interrupt(session.get()), DIAGS_OK);
  const OwnedRun run = start(session, planOf(session, kSound));
  ASSERT_TRUE(run) << diags_last_error();
  EXPECT_EQ(diags_interrupt(session.get()), DIAGS_OK);
  EXPECT_EQ(resultOf(run).passed, 1U);
}

TEST(LastError, IsOfTheThreadsLastCall) {
  EXPECT_EQ(diags_run_cancel(nullptr), DIAGS_BAD_ARGUMENT);
  std::thread other([] { EXPECT_STREQ(diags_last_error(), ""); });
  other.join();
  EXPECT_STRNE(diags_last_error(), "");
  EXPECT_EQ(diags_run_close(nullptr), DIAGS_OK);
  EXPECT_STREQ(diags_last_error(), "");
}

void useEverything(const OwnedSession& shared) {
  char* json = nullptr;
  EXPECT_EQ(diags_list(shared.get(), &json), DIAGS_OK) << diags_last_error();
  diags_free(json);
  const OwnedSession own = open();
  const OwnedPlan plan = planOf(own, kSound);
  EXPECT_EQ(diags_plan_preview(plan.get(), &json), DIAGS_OK) << diags_last_error();
  diags_free(json);
  const OwnedRun run = start(own, plan);
  ASSERT_TRUE(run) << diags_last_error();
  EXPECT_THAT(allEvents(run), Not(IsEmpty()));
  EXPECT_EQ(resultOf(run).passed, 1U);
  // Of the shared one some get their turn, and others are told that it is busy.
  const OwnedRun another = start(shared, planOf(shared, kSound));
  EXPECT_TRUE(another || std::string(diags_last_error()).find("has a run") != std::string::npos)
      << diags_last_error();
}

TEST(EveryFunction, MayBeCalledFromEightThreadsAtOnce) {
  const OwnedSession shared = open();
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) threads.emplace_back([&shared] { useEverything(shared); });
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace host
