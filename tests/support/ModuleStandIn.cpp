// A shared library to be loaded under any file name; its soname is one that is looked for.

extern "C" __attribute__((visibility("default"))) int Answer() { return 42; }
