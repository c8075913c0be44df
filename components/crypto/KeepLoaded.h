// KeepLoaded.h - for libraries that are not made to be unloaded.
#pragma once

// Keeps the file that holds `function` loaded to the end of the process, even if all that needs it
// is unloaded. What the file has set up for itself then stays too and isn't set up again.
void KeepLoaded(const void* function);
