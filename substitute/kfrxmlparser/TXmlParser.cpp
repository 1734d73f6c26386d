#include "framework/TXmlParser.h"

// expat.h declares the limits on entity expansion for a parser that reads DTDs, as every usual
// build of Expat does.
#define XML_DTD 1
#include <expat.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>

#include "framework/TVORException.h"
#include "substitute/kfrxmlparser/AttributeMap.h"
#include "substitute/kfrxmlparser/InPlaceInput.h"
#include "substitute/kfrxmlparser/SingleByteEncodings.h"

namespace NZELVOR20 {
namespace {

/// A document that cannot be read where it lies is copied by Expat, in portions that stay in the
/// cache.
constexpr std::size_t kPortion = 256 * 1024;

/// Entities may expand to this many bytes in any case, and beyond that to `kMostAmplification`
/// times the size of the document.
constexpr unsigned long long kExpansionAlwaysAllowed = 64 * 1024;
constexpr float kMostAmplification = 10.0F;

struct FreeParser {
  void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

/// The line behind the text: one more than it has line ends, of which CR LF is one.
unsigned long lastLine(const char* text, std::size_t size) {
  auto ends = std::count(text, text + size, '\n');
  const char* const end = text + size;
  for (const char* at = std::find(text, end, '\r'); at != end; at = std::find(at + 1, end, '\r')) {
    ends += at[1] == '\n' ? 0 : 1;
  }
  return static_cast<unsigned long>(ends) + 1;
}

using ParserHandle = std::unique_ptr<XML_ParserStruct, FreeParser>;

}  // namespace

/// Ties one Expat parser to the notifications of a `TXmlParser`. An exception must not pass through
/// Expat's frames: it is kept, the parser stopped, and thrown again outside.
class NZELVOR20_INTERNAL TXmlParser::Engine {
 public:
  explicit Engine(TXmlParser& owner) : m_owner(owner) {}

  void parse(char* buffer);
  unsigned long line() const;
  void collect(const char* data, int length) {
    m_text.append(data, static_cast<std::size_t>(length));
  }

 private:
  /// Leaves the engine ready for the next document, however the parsing ended.
  class Session {
   public:
    explicit Session(Engine& engine);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

   private:
    Engine& m_engine;
  };

  ParserHandle makeParser();
  bool feed(const char* text, std::size_t size);
  void flushText();

  template <typename Notification>
  void guarded(Notification notification) noexcept;

  static Engine& of(void* data) { return *static_cast<Engine*>(data); }
  static void XMLCALL onStart(void* data, const XML_Char* name, const XML_Char** attributes);
  static void XMLCALL onEnd(void* data, const XML_Char* name);
  static void XMLCALL onText(void* data, const XML_Char* text, int length);
  static void XMLCALL onInstruction(void* data, const XML_Char* target, const XML_Char* text);
  static void XMLCALL onComment(void* data, const XML_Char* text);
  static int XMLCALL onEncoding(void* data, const XML_Char* name, XML_Encoding* encoding);

  TXmlParser& m_owner;
  ParserHandle m_parser;
  unsigned long m_line = 0;
  std::exception_ptr m_failure;
  std::string m_name;
  std::string m_text;  ///< character data since the last tag
  kfrxmlparser::AttributeMap m_attributes;
};

TXmlParser::Engine::Session::Session(Engine& engine) : m_engine(engine) {
  if (m_engine.m_parser) {
    throw TVORException(TVORStatusCode(eVORFailed, "the XML parser is parsing already"));
  }
  m_engine.m_parser = m_engine.makeParser();
}

TXmlParser::Engine::Session::~Session() {
  m_engine.m_parser.reset();
  m_engine.m_failure = nullptr;
  m_engine.m_text.clear();
}

void TXmlParser::Engine::parse(char* buffer) {
  const std::size_t size = buffer != nullptr ? std::strlen(buffer) : 0;
  if (size == 0) return;
  kfrxmlparser::InPlaceInput input(buffer, size);
  const Session session(*this);
  const bool isWellFormed =
      input.lendTo(m_parser.get())
          ? XML_ParseBuffer(m_parser.get(), static_cast<int>(size), 1) == XML_STATUS_OK
          : feed(buffer, size);
  // Expat tells a line by reading on from the last one that it told: at the end of a large document
  // that takes longer than everything else, so the lines are counted here.
  m_line = isWellFormed ? lastLine(buffer, size) : line();
  if (isWellFormed) return;
  if (m_failure) std::rethrow_exception(m_failure);
  flushText();
  m_owner.Error(XML_ErrorString(XML_GetErrorCode(m_parser.get())));
}

bool TXmlParser::Engine::feed(const char* text, std::size_t size) {
  while (true) {
    const std::size_t portion = std::min(size, kPortion);
    const bool isLast = portion == size;
    if (XML_Parse(m_parser.get(), text, static_cast<int>(portion), isLast) != XML_STATUS_OK) {
      return false;
    }
    if (isLast) return true;
    text += portion;
    size -= portion;
  }
}

unsigned long TXmlParser::Engine::line() const {
  return m_parser ? static_cast<unsigned long>(XML_GetCurrentLineNumber(m_parser.get())) : m_line;
}

ParserHandle TXmlParser::Engine::makeParser() {
  ParserHandle parser(XML_ParserCreate_MM(nullptr, &kfrxmlparser::InPlaceInput::memory(), nullptr));
  if (!parser) throw std::bad_alloc();
  XML_Parser raw = parser.get();
  XML_SetUserData(raw, this);
  XML_SetElementHandler(raw, onStart, onEnd);
  XML_SetCharacterDataHandler(raw, onText);
  XML_SetProcessingInstructionHandler(raw, onInstruction);
  XML_SetCommentHandler(raw, onComment);
  XML_SetUnknownEncodingHandler(raw, onEncoding, nullptr);
  XML_SetBillionLaughsAttackProtectionActivationThreshold(raw, kExpansionAlwaysAllowed);
  XML_SetBillionLaughsAttackProtectionMaximumAmplification(raw, kMostAmplification);
  return parser;
}

void TXmlParser::Engine::flushText() {
  if (m_text.empty()) return;
  m_owner.CharacterData(m_text);
  m_text.clear();
}

template <typename Notification>
void TXmlParser::Engine::guarded(Notification notification) noexcept {
  if (m_failure) return;
  try {
    notification();
  } catch (...) {
    m_failure = std::current_exception();
    XML_StopParser(m_parser.get(), XML_FALSE);
  }
}

void XMLCALL TXmlParser::Engine::onStart(void* data, const XML_Char* name,
                                         const XML_Char** attributes) {
  Engine& engine = of(data);
  engine.guarded([&] {
    engine.flushText();
    engine.m_name.assign(name);
    engine.m_owner.StartElement(engine.m_name, engine.m_attributes.assign(attributes));
  });
}

void XMLCALL TXmlParser::Engine::onEnd(void* data, const XML_Char* name) {
  Engine& engine = of(data);
  engine.guarded([&] {
    engine.flushText();
    engine.m_name.assign(name);
    engine.m_owner.EndElement(engine.m_name);
  });
}

void XMLCALL TXmlParser::Engine::onText(void* data, const XML_Char* text, int length) {
  Engine& engine = of(data);
  engine.guarded([&] { engine.m_owner.ParseCharData(text, length); });
}

void XMLCALL TXmlParser::Engine::onInstruction(void* data, const XML_Char* target,
                                               const XML_Char* text) {
  Engine& engine = of(data);
  engine.guarded([&] { engine.m_owner.ProcessingInstruction(target, text); });
}

void XMLCALL TXmlParser::Engine::onComment(void* data, const XML_Char* text) {
  Engine& engine = of(data);
  engine.guarded([&] { engine.m_owner.Comment(text); });
}

int XMLCALL TXmlParser::Engine::onEncoding(void*, const XML_Char* name, XML_Encoding* encoding) {
  return kfrxmlparser::describeEncoding(name, *encoding) ? XML_STATUS_OK : XML_STATUS_ERROR;
}

TXmlParser::TXmlParser() : m_engine(std::make_unique<Engine>(*this)) {}

TXmlParser::~TXmlParser() = default;

void TXmlParser::Parse(char* buffer) { m_engine->parse(buffer); }

unsigned long TXmlParser::GetCurLine() const { return m_engine->line(); }

void TXmlParser::ParseJSSP(char*) {
  throw TVORException(TVORStatusCode(eVORNotSupported, "script sections in XML documents"));
}

void TXmlParser::ParseCharData(const char* data, int length) { m_engine->collect(data, length); }

bool TXmlParser::GetAttributeNValue(const std::map<std::string, std::string>& attributes,
                                    const std::string& name, std::string& value) {
  const auto found = attributes.find(name);
  if (found == attributes.end()) return false;
  value = found->second;
  return true;
}

}  // namespace NZELVOR20
