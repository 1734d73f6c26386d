#pragma once

#include <map>
#include <memory>
#include <string>

#include "framework/Export.h"

namespace NZELVOR20 {

/// Base of the callback XML parsers. A derived parser overrides the notifications that it wants;
/// `Parse` calls them on the caller's thread. One parser parses one document at a time.
class KFRXMLPARSER_API TXmlParser {
 public:
  TXmlParser();
  TXmlParser(const TXmlParser&) = delete;
  TXmlParser& operator=(const TXmlParser&) = delete;
  virtual ~TXmlParser();

  /// Parses the document in `buffer`, which ends at its first zero byte; an empty one notifies
  /// nothing. Text that is not well-formed is reported once through `Error`, after the
  /// notifications for what came before it. External entities are not read, and the expansion of
  /// internal ones is bounded. What a notification throws passes to the caller.
  void Parse(char* buffer);

  /// The line that the parser is at, counted from 1; 0 before the first `Parse`.
  unsigned long GetCurLine() const;

 protected:
  /// Start of an element, with its attributes in name order.
  virtual void StartElement(const std::string& name,
                            const std::map<std::string, std::string>& attributes) = 0;
  /// End of an element.
  virtual void EndElement(const std::string& name) = 0;
  /// A processing instruction.
  virtual void ProcessingInstruction(const std::string& target, const std::string& data) = 0;
  /// The text between two tags, in one piece, CDATA sections and references resolved.
  virtual void CharacterData(const std::string& text) = 0;
  /// A comment.
  virtual void Comment(const std::string& text) = 0;
  /// Something that is wrong with the document; derived parsers call it too.
  virtual void Error(const std::string& message) = 0;

  /// Parses a document with embedded script sections; not supported here: throws `TVORException`.
  virtual void ParseJSSP(char* buffer);
  /// Takes a run of character data as the tokenizer delivers it; the pieces between two tags are
  /// collected and handed to `CharacterData` at the next tag.
  virtual void ParseCharData(const char* data, int length);
  /// Looks `name` up in `attributes`; true and the value in `value` when it is there.
  virtual bool GetAttributeNValue(const std::map<std::string, std::string>& attributes,
                                  const std::string& name, std::string& value);

 private:
  class Engine;
  std::unique_ptr<Engine> m_engine;
};

}  // namespace NZELVOR20
