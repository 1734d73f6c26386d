/* Compiled without any protection, so that hardening.sh can show that it sees this. */
#include <stdio.h>

int unprotected(char* text, int number) {
  char buffer[32];
  return snprintf(buffer, (size_t)number, text, number) + buffer[0];
}
