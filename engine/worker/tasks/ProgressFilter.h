#pragma once

#include <ostream>
#include <streambuf>

namespace engine::tasks {

/// Standard output while a test runs: what the runner writes of the progress becomes messages,
/// everything else goes on to where it went before.
class ProgressFilter : public std::streambuf {
 public:
  /// Takes the place of the stream's buffer until it is gone.
  explicit ProgressFilter(std::ostream& stream);
  ProgressFilter(const ProgressFilter&) = delete;
  ProgressFilter& operator=(const ProgressFilter&) = delete;
  ~ProgressFilter() override;

 protected:
  int_type overflow(int_type one) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override { return m_former->pubsync(); }

 private:
  std::ostream& m_stream;
  std::streambuf* m_former;
};

}  // namespace engine::tasks
