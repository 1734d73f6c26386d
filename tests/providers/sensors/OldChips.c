/* A module as one of an older installation: its function has another name. */

void diagsSensorChips(void* sensors);

void diagsSensorChips(void* sensors) { *(volatile char*)sensors = 1; /* of another layout */ }
