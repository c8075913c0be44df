// Part of the program under the sanitizers only, so that a leak of ours shows wherever it is run.

// What Qt's connection to a session bus that isn't there leaves behind when the program ends.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libdbus-1.so\n";
}
