// ServiceEntries.h - whether a file is a certificate service that the library can work with.
#pragma once

#include <string>

// The library calls a service's entry points without a look whether they are there. Throws a setup
// Failure for a file (the file system's bytes) that can be loaded and lacks one that is called;
// nothing for one that can't be loaded or isn't there, which whoever loads it tells. A good one
// stays loaded.
void CheckServiceEntries(const std::string& path);

// The same for a file that is to be registered, a path as in PathText.h. Throws a usage Failure for
// a path that isn't absolute, and a file Failure for what can't be loaded.
void CheckServiceFile(const std::string& path);
