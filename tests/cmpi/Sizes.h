/* What one compilation of the headers came to. */
#ifndef TESTS_CMPI_SIZES_H
#define TESTS_CMPI_SIZES_H

struct Sizes {
  int edition;
  unsigned broker;
  unsigned brokerTable;
  unsigned factoryTable;
  unsigned instanceTable;
  unsigned instanceInterface;
  unsigned data;
  unsigned status;
};

#endif
