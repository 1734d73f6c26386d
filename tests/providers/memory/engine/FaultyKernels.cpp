#include "tests/providers/memory/engine/FaultyKernels.h"

#include <algorithm>

namespace providers::memory {

namespace {

const FaultModel* g_model = nullptr;

template <class Work>
void withFaults(std::uint64_t* words, std::size_t line, const Work& work) {
  std::uint64_t before[kLineWords];
  std::copy_n(words + line * kLineWords, kLineWords, before);
  work();
  if (g_model->written) g_model->written(words, line, before);
}

std::size_t lineAt(LineRange lines, Direction direction, std::size_t i) {
  return direction == Direction::Up ? lines.first + i : lines.first + lines.count - 1 - i;
}

void write(std::uint64_t* words, LineRange lines, const Pattern& pattern) {
  for (std::size_t line = lines.first; line < lines.first + lines.count; ++line)
    withFaults(words, line, [&] { scalarKernels()->write(words, {line, 1}, pattern); });
}

std::size_t checkAndWrite(std::uint64_t* words, LineRange lines, Direction direction,
                          const Pattern& expected, const Pattern& next) {
  for (std::size_t i = 0; i < lines.count; ++i) {
    const LineRange line{lineAt(lines, direction, i), 1};
    if (scalarKernels()->check(words, line, direction, expected) == 0) return i;
    write(words, line, next);
  }
  return lines.count;
}

}  // namespace

const Kernels& faultyKernels(const FaultModel& model) {
  static const Kernels kernels{"faulty",      write,         scalarKernels()->check,
                               checkAndWrite, checkAndWrite, scalarKernels()->drain};
  g_model = &model;
  return kernels;
}

}  // namespace providers::memory
