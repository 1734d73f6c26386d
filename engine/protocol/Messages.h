#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "engine/Offer.h"
#include "engine/events/Event.h"

/// What the supervisor and a worker say to each other: lines of JSON, each way through a pipe of
/// its own. The supervisor sends one `Request`, and `Stop` at any time behind it. The worker sends
/// `Hello` first and `Done` last; behind that it cleans up and ends.
namespace engine {

/// Changes whenever one side would not understand the other any more.
constexpr std::uint64_t kProtocolVersion = 1;

/// A line that the other side would not say.
class ProtocolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Where the installation is and how the framework behaves on it.
struct InstallationOptions {
  std::string root;
  std::string logFile;  ///< empty: none
  int logLevel = 3;
  std::optional<std::string> biosId;  ///< instead of the firmware's own
  bool schemaCache = true;
  std::vector<std::string> withoutProviders;  ///< these are left out
};

enum class Task : std::uint8_t { kList, kRun, kProviders, kInspect, kCheck };

using SettingTexts = std::vector<std::pair<std::string, std::string>>;

struct Request {
  Task task = Task::kList;
  InstallationOptions installation;
  std::string test;       ///< run: the test identifier
  SettingTexts settings;  ///< run: put into the test's default settings before
  std::optional<std::uint64_t> threadedMinutes;  ///< run: once more on a thread of its own
  std::string className;                         ///< inspect
  std::int64_t logLevel = -1;                    ///< run: the log up to this level becomes events
  bool wantsFacts = false;                       ///< list: what the services say of themselves too
};

/// The running test is to be ended in good order.
struct Stop {};

using Order = std::variant<Request, Stop>;

struct Hello {
  std::uint64_t version = kProtocolVersion;
};

/// A provider is called: the last one to be so is to blame for what happens next.
struct Entered {
  std::string provider;
  std::string operation;
};

/// Something that becomes an event of the test.
struct Happened {
  Source source = Source::kWorker;
  Body body;
};

/// One provider of the installation.
struct ProviderFacts {
  struct Class {
    std::string name;
    std::vector<std::string> namespaces;
  };
  struct Interface {
    std::string name;
    std::string edition;
  };
  std::string name;
  std::string library;
  std::string state;
  std::string reason;
  std::vector<Class> classes;
  std::vector<Interface> interfaces;
};

enum class Weight : std::uint8_t {
  kNote,     ///< worth knowing
  kWarning,  ///< something may be missing or not to be relied on
  kFault     ///< something of the installation is wrong
};

/// What is to be told of the installation, in one line.
struct Finding {
  Weight weight = Weight::kFault;
  std::string text;
};

/// The runner's listing, word for word.
struct Listing {
  std::string text;
};

/// A line of the answer to `Task::kInspect`: "name : value", or a text where there is no name.
struct AnswerLine {
  std::string name;
  std::string value;
};

/// The worker could still say why it dies.
struct Crashed {
  std::int64_t code = 0;  ///< signal, or exception code
  std::string provider;
  std::string operation;
  std::vector<std::string> libraries;
  std::optional<std::uint64_t> processor = std::nullopt;  ///< the logical one that it was on
};

enum class DoneStatus : std::uint8_t {
  kOk,
  kNothing,     ///< there is nothing of what was asked for
  kFailed,      ///< `text` says why
  kUnusable,    ///< the installation does not come up
  kOutOfMemory  ///< `text` names the provider that took it all; empty where it was scarce
};

struct Done {
  DoneStatus status = DoneStatus::kOk;
  std::string text;
};

/// `Done` with `kOutOfMemory`, for who has no memory left to put it together.
constexpr std::string_view kOutOfMemoryLine = "{\"done\":{\"status\":4,\"text\":\"\"}}";

using Reply = std::variant<Hello, Entered, Happened, OfferedTest, UnusableProvider, Identity,
                           ProviderFacts, Finding, Listing, AnswerLine, Crashed, Done>;

/// As lines, without their line ends. Texts come out as they went in, those that are no UTF-8 too;
/// but for those of `Happened`, where other bytes become U+FFFD.
std::string lineOf(const Order& order);
std::string lineOf(const Reply& reply);

/// Throw `ProtocolError`, which says what is wrong with the line.
Order orderFrom(std::string_view line);
Reply replyFrom(std::string_view line);

}  // namespace engine
