// FailingAllocations.h - replaces the operators new and delete of the whole process, the loaded
// libraries' included, by ones that fail on demand.
#pragma once

// From now on this thread has so many allocations before all fail; negative: as many as it likes.
// Nothing has failed yet.
void SetAllocationsLeft(int allocations);
bool HasAllocationFailed();
