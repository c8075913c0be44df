// EngineClass.h - the registration of the built engine's class, for one test.
#pragma once

#include <string>

// Registers ENGINE_FILE as its users do, and takes the class away again. False on failure.
bool RegisterEngineClass();
bool UnregisterEngineClass();

// What the file may let out, in the order of the names' bytes, with blanks between.
extern const char kEngineExports[];
