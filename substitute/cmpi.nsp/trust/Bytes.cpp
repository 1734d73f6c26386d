#include "substitute/cmpi.nsp/trust/Bytes.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace cmpinsp {

namespace {

/// Most of what is asked for lies at the beginning of a library: that is read at once.
constexpr std::size_t kHead = 8192;

class FileBytes final : public Bytes {
 public:
  explicit FileBytes(const std::string& path)
      : m_stream(std::filesystem::u8path(path), std::ios::binary | std::ios::ate) {
    const auto end = m_stream ? m_stream.tellg() : std::streampos(0);
    m_size = end < 0 ? 0 : static_cast<std::uint64_t>(end);
    m_head = fromFile(0, static_cast<std::size_t>(std::min<std::uint64_t>(m_size, kHead)))
                 .value_or(std::string());
  }

  std::uint64_t size() const override { return m_size; }

  std::optional<std::string> read(std::uint64_t offset, std::size_t length) override {
    if (offset > m_size || length > m_size - offset) return std::nullopt;
    if (offset + length <= m_head.size()) {
      return m_head.substr(static_cast<std::size_t>(offset), length);
    }
    return fromFile(offset, length);
  }

 private:
  std::optional<std::string> fromFile(std::uint64_t offset, std::size_t length) {
    std::string bytes(length, '\0');
    m_stream.clear();
    m_stream.seekg(static_cast<std::streamoff>(offset));
    if (!m_stream.read(bytes.data(), static_cast<std::streamsize>(length))) return std::nullopt;
    return bytes;
  }

  std::ifstream m_stream;
  std::uint64_t m_size = 0;
  std::string m_head;
};

class TextBytes final : public Bytes {
 public:
  explicit TextBytes(const std::string& content) : m_content(content) {}

  std::uint64_t size() const override { return m_content.size(); }

  std::optional<std::string> read(std::uint64_t offset, std::size_t length) override {
    if (offset > size() || length > size() - offset) return std::nullopt;
    return m_content.substr(static_cast<std::size_t>(offset), length);
  }

 private:
  const std::string& m_content;
};

}  // namespace

std::uint64_t numberIn(const std::string& bytes, std::size_t offset, std::size_t length) {
  std::uint64_t number = 0;
  for (std::size_t i = length; i-- > 0;) {
    number = number << 8U | static_cast<unsigned char>(bytes.at(offset + i));
  }
  return number;
}

std::optional<std::uint64_t> Bytes::number(std::uint64_t offset, std::size_t length) {
  const auto bytes = read(offset, length);
  if (!bytes) return std::nullopt;
  return numberIn(*bytes, 0, length);
}

std::optional<std::string> Bytes::text(std::uint64_t offset, std::size_t most) {
  constexpr std::size_t kPiece = 256;
  std::string text;
  while (text.size() <= most && offset < size()) {
    const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(kPiece, size() - offset));
    const auto piece = read(offset, length);
    if (!piece) return std::nullopt;
    const std::size_t end = piece->find('\0');
    text += piece->substr(0, end);
    if (end != std::string::npos) return text.size() > most ? std::nullopt : std::optional(text);
    offset += length;
  }
  return std::nullopt;
}

std::unique_ptr<Bytes> bytesOfFile(const std::string& path) {
  return std::make_unique<FileBytes>(path);
}

std::unique_ptr<Bytes> bytesOf(const std::string& content) {
  return std::make_unique<TextBytes>(content);
}

}  // namespace cmpinsp
