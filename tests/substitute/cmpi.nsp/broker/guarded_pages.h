/* Memory that ends where the next access would be trapped. */
#ifndef TESTS_GUARDED_PAGES_H
#define TESTS_GUARDED_PAGES_H

#include <stddef.h>

/* A copy of `size` bytes, no more than a page of them, whose end is the end of the readable memory;
   it stays until the process ends. NULL where the system gives no memory. */
void* copyToEndOfPage(const void* bytes, size_t size);

#endif
