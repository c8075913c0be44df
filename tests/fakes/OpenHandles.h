// OpenHandles.h - what this process holds of the system.
#pragma once

// Open descriptors or handles; 0 if the system doesn't tell.
int CountOpenHandles();
