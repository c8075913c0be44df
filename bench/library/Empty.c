/* A library with nothing in it: what loading costs at least. */
int BenchEmpty(void);
int BenchEmpty(void) { return 0; }
