// Resources.h - what this process holds of the system.
#pragma once

struct Resources {
    long heapBytes = 0;   // allocated
    int objects = 0;      // shared libraries
    int descriptors = 0;  // descriptors or handles
};

Resources CurrentResources();
