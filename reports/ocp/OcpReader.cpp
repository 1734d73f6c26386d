#include "reports/ocp/OcpReader.h"

#include <utility>
#include <vector>

namespace reports {
namespace {

using Json = nlohmann::json;

/// Makes values of what the parser meets, which keeps no call for each level that it goes down.
class Builder : public nlohmann::json_sax<Json> {
 public:
  OcpText text;
  std::string fault;

  bool null() override { return add(nullptr); }
  bool boolean(bool flag) override { return add(flag); }
  bool number_integer(number_integer_t number) override { return add(number); }
  bool number_unsigned(number_unsigned_t number) override { return add(number); }
  bool number_float(number_float_t number, const string_t& /*digits*/) override {
    return add(number);
  }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }  // JSON has none

  bool start_object(std::size_t /*size*/) override { return open(Json::object()); }
  bool start_array(std::size_t /*size*/) override { return open(Json::array()); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }

  bool key(string_t& name) override {
    if (m_passedOver != 0) return true;
    if (m_open.back()->contains(name)) text.repeated = name;
    m_key = std::move(name);
    return true;
  }

  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const Json::exception& /*error*/) override {
    fault = "the line is no JSON at byte " + std::to_string(position);
    return false;
  }

 private:
  bool add(Json value) {
    if (m_passedOver == 0) place(std::move(value));
    return true;
  }

  Json* place(Json value) {
    if (m_open.empty()) return &(text.value = std::move(value));
    Json& around = *m_open.back();
    if (around.is_object()) return &(around[m_key] = std::move(value));
    around.push_back(std::move(value));
    return &around.back();
  }

  bool open(Json empty) {
    if (m_passedOver != 0) {
      ++m_passedOver;
      return true;
    }
    Json* const placed = place(std::move(empty));
    if (m_open.size() == kDeepestOcpMember) {
      m_passedOver = 1;
    } else {
      m_open.push_back(placed);
    }
    return true;
  }

  bool close() {
    if (m_passedOver != 0) {
      --m_passedOver;
    } else {
      m_open.pop_back();
    }
    return true;
  }

  std::vector<Json*> m_open;     ///< the objects and lists around what comes next
  std::size_t m_passedOver = 0;  ///< how many more are open in a deepest one
  std::string m_key;
};

}  // namespace

OcpText readOcpLine(std::string_view line) {
  Builder builder;
  if (!Json::sax_parse(line.begin(), line.end(), &builder)) throw NoJson(builder.fault);
  return std::move(builder.text);
}

}  // namespace reports
