#include "RegisteredClasses.h"

// The store goes with its TemporaryPrefix.
void UnregisterClasses() {}
