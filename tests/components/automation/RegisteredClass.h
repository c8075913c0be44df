// RegisteredClass.h - the registration of a built automation class, for one test.
#pragma once

// Registers `file` as the server of `classId` ("{...}") as its users do, and takes the class away
// again. False on failure.
bool RegisterClassFile(const char* file, const char* classId);
bool UnregisterClassFile(const char* file, const char* classId);

// What the file of a class whose methods are `methods`, in the order of their names' bytes with
// blanks between, may let out, in the same form.
const char* ClassFileExports(const char* methods);
