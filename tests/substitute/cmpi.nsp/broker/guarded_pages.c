/* Anonymous memory, which the C standard's own headers leave out. */
#define _DEFAULT_SOURCE
#include "guarded_pages.h"

#include <string.h>

#if defined(_WIN32)
#include <windows.h>

enum { kPage = 4096 };

static char* twoPages(void) {
  DWORD before;
  char* pages = VirtualAlloc(NULL, 2 * kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (pages == NULL || !VirtualProtect(pages + kPage, kPage, PAGE_NOACCESS, &before)) return NULL;
  return pages;
}
#else
#include <sys/mman.h>

/* A multiple of the page size of every machine that this is built for. */
enum { kPage = 65536 };

static char* twoPages(void) {
  char* pages = mmap(NULL, 2 * kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED || mprotect(pages + kPage, kPage, PROT_NONE) != 0) return NULL;
  return pages;
}
#endif

void* copyToEndOfPage(const void* bytes, size_t size) {
  char* pages = twoPages();
  if (pages == NULL) return NULL;
  return memcpy(pages + kPage - size, bytes, size);
}
