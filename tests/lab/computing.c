/* Computes the same again and again: general registers and vectors. Status 1 as soon as a result is
   another one; 0 after 10 rounds from the first line of input on. */
#include <fcntl.h>
#include <stdint.h>
#include <stdio.h>
#include <unistd.h>

enum { kNumbers = 4096, kPasses = 300, kRounds = 10 };

static float g_numbers[kNumbers];

static uint64_t compute(void) {
  uint64_t sum = 1;
  for (int pass = 0; pass < kPasses; ++pass) {
    float total = 0;
    for (int i = 0; i < kNumbers; ++i) {
      g_numbers[i] = (float)i * 0.25F + (float)pass;
      total += g_numbers[i] * 1.5F;
      sum = sum * UINT64_C(6364136223846793005) + (uint64_t)i;
    }
    sum ^= (uint64_t)total;
  }
  return sum;
}

int main(void) {
  char line;
  int rounds = 0;
  const uint64_t right = compute();
  puts("computing");
  fflush(stdout);
  fcntl(0, F_SETFL, O_NONBLOCK);
  while (rounds < kRounds) {
    if (compute() != right) return 1;
    if (rounds || read(0, &line, 1) == 1) ++rounds;
  }
  return 0;
}
