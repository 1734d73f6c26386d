// A program for the sake of the headers that are compiled for it: the tests use them as they are.
int main() { return 0; }
