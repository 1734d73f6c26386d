#include <nlohmann/json.hpp>
#include <type_traits>

#include "engine/events/EventLine.h"
#include "engine/protocol/Fields.h"
#include "engine/protocol/Text.h"

namespace engine {
namespace {

using Json = nlohmann::json;

/// The member that stands for the kind of a message, in the order of the variants.
const char* const kOrderNames[] = {"request", "stop"};
const char* const kReplyNames[] = {"hello",    "entered",  "sequence", "test",
                                   "unusable", "identity", "provider", "finding",
                                   "listing",  "answer",   "crashed",  "done"};
static_assert(std::size(kOrderNames) == std::variant_size_v<Order>);
static_assert(std::size(kReplyNames) == std::variant_size_v<Reply>);

template <class T>
struct IsVector : std::false_type {};
template <class T>
struct IsVector<std::vector<T>> : std::true_type {};
template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

class Writer {
 public:
  template <class T>
  void operator()(const char* name, T& value) {
    if constexpr (IsOptional<T>::value) {
      if (value) m_json[name] = of(*value);
    } else {
      m_json[name] = of(value);
    }
  }

  template <class T>
  static Json of(T& value) {
    if constexpr (std::is_same_v<T, std::string>) {
      return isUtf8(value) ? Json(value) : Json{{"hex", hexOf(value)}};
    } else if constexpr (std::is_enum_v<T>) {
      return Json(static_cast<unsigned>(value));
    } else if constexpr (std::is_arithmetic_v<T>) {
      return Json(value);
    } else if constexpr (IsVector<T>::value) {
      Json array = Json::array();
      for (auto& one : value) array.push_back(of(one));
      return array;
    } else {
      return ofMembers(value);
    }
  }

 private:
  template <class T>
  static Json ofMembers(T& value) {
    Writer writer;
    fields(writer, value);
    return std::move(writer.m_json);
  }
  static Json ofMembers(std::pair<std::string, std::string>& value) {
    return Json::array({of(value.first), of(value.second)});
  }

  Json m_json = Json::object();
};

class Reader {
 public:
  explicit Reader(const Json& json) : m_json(json) {
    if (!json.is_object()) throw ProtocolError("a message is no object");
  }

  template <class T>
  void operator()(const char* name, T& value) {
    const auto member = m_json.find(name);
    if constexpr (IsOptional<T>::value) {
      if (member != m_json.end()) read(*member, name, value.emplace());
    } else {
      if (member == m_json.end()) throw ProtocolError(std::string("\"") + name + "\" is missing");
      read(*member, name, value);
    }
  }

  template <class T>
  static void read(const Json& json, const char* name, T& value) {
    if constexpr (std::is_same_v<T, std::string>) {
      readText(json, name, value);
    } else if constexpr (std::is_enum_v<T>) {
      readEnumerator(json, name, value);
    } else if constexpr (std::is_arithmetic_v<T>) {
      readNumber(json, name, value);
    } else if constexpr (IsVector<T>::value) {
      if (!json.is_array()) fail(name, "array");
      value.clear();
      for (const Json& one : json) read(one, name, value.emplace_back());
    } else {
      readMembers(json, name, value);
    }
  }

 private:
  [[noreturn]] static void fail(const char* name, const char* what) {
    throw ProtocolError(std::string("\"") + name + "\" is no " + what);
  }

  static void readText(const Json& json, const char* name, std::string& value) {
    if (json.is_string()) {
      value = json.get<std::string>();
      return;
    }
    const auto hex = json.is_object() ? json.find("hex") : json.end();
    const bool isHex = json.is_object() && hex != json.end() && hex->is_string();
    if (!isHex || !bytesFrom(hex->get_ref<const std::string&>(), value)) fail(name, "text");
  }

  template <class T>
  static void readEnumerator(const Json& json, const char* name, T& value) {
    const bool fits = json.is_number_unsigned() &&
                      json.get<std::uint64_t>() <= static_cast<std::uint64_t>(lastOf(T()));
    if (!fits) fail(name, "known kind");
    value = static_cast<T>(json.get<unsigned>());
  }

  template <class T>
  static void readNumber(const Json& json, const char* name, T& value) {
    if constexpr (std::is_same_v<T, bool>) {
      if (!json.is_boolean()) fail(name, "boolean");
    } else if constexpr (std::is_floating_point_v<T>) {
      if (!json.is_number()) fail(name, "number");
    } else if constexpr (std::is_unsigned_v<T>) {
      if (!json.is_number_unsigned()) fail(name, "count");
    } else {
      if (!json.is_number_integer()) fail(name, "whole number");
    }
    value = json.get<T>();
  }

  template <class T>
  static void readMembers(const Json& json, const char* name, T& value) {
    if (!json.is_object()) fail(name, "object");
    Reader reader(json);
    fields(reader, value);
  }
  static void readMembers(const Json& json, const char* name,
                          std::pair<std::string, std::string>& value) {
    if (!json.is_array() || json.size() != 2) fail(name, "pair");
    read(json[0], name, value.first);
    read(json[1], name, value.second);
  }

  const Json& m_json;
};

template <class Message>
std::string lineNamed(const char* name, const Message& message) {
  Message copy = message;
  return Json{{name, Writer::of(copy)}}.dump();
}

/// Tries the kind at `index` and those behind it.
template <class Variant, std::size_t index = 0>
Variant read(const Json& json, const char* const* names) {
  if constexpr (index == std::variant_size_v<Variant>) {
    throw ProtocolError("the message is of no known kind");
  } else if constexpr (std::is_same_v<std::variant_alternative_t<index, Variant>, Happened>) {
    return read<Variant, index + 1>(json, names);  // is a line of another form
  } else {
    const auto member = json.find(names[index]);
    if (member == json.end()) return read<Variant, index + 1>(json, names);
    Variant message(std::in_place_index<index>);
    Reader::read(*member, names[index], std::get<index>(message));
    return message;
  }
}

template <class Variant>
Variant parsed(std::string_view line, const char* const* names) {
  try {
    const auto refuseDepth = [](int depth, Json::parse_event_t, const Json&) {
      if (depth > 16) throw ProtocolError("the message is nested too deeply");
      return true;
    };
    const Json json = Json::parse(line.begin(), line.end(), refuseDepth);
    if (!json.is_object()) throw ProtocolError("the line is no message");
    return read<Variant>(json, names);
  } catch (const Json::exception&) {
    throw ProtocolError("the line is no JSON");
  }
}

Happened happenedFrom(std::string_view line) {
  try {
    Event event = eventFrom(line);
    return {event.source, std::move(event.body)};
  } catch (const NoEvent& fault) {
    throw ProtocolError(fault.what());
  }
}

bool isEvent(std::string_view line) {
  constexpr std::string_view kStart = "{\"sequence\":";
  return line.substr(0, kStart.size()) == kStart;
}

}  // namespace

std::string lineOf(const Order& order) {
  return std::visit(
      [&](const auto& message) { return lineNamed(kOrderNames[order.index()], message); }, order);
}

std::string lineOf(const Reply& reply) {
  if (const auto* const happened = std::get_if<Happened>(&reply)) {
    Event event;
    event.source = happened->source;
    event.body = happened->body;
    return lineOf(event);
  }
  return std::visit(
      [&](const auto& message) -> std::string {
        if constexpr (std::is_same_v<std::decay_t<decltype(message)>, Happened>) {
          return {};
        } else {
          return lineNamed(kReplyNames[reply.index()], message);
        }
      },
      reply);
}

Order orderFrom(std::string_view line) { return parsed<Order>(line, kOrderNames); }

Reply replyFrom(std::string_view line) {
  if (isEvent(line)) return happenedFrom(line);
  return parsed<Reply>(line, kReplyNames);
}

}  // namespace engine
