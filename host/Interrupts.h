#pragma once

#include <functional>

namespace host {

/// While it lives, the keys that end a program (Ctrl-C), and requests to end it, are told instead,
/// on a thread of its own, each time one comes. One at a time. Where interrupts were ignored when
/// the program started, they stay so.
class Interrupts {
 public:
  explicit Interrupts(std::function<void()> onInterrupt);
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;
  ~Interrupts();
};

/// From now on, output that nobody reads any more cannot be written, and is no end of this program:
/// Ctrl-C ends the other half of "diags run ... | tee", too, and the records are to be written all
/// the same.
void outliveReaders();

}  // namespace host
