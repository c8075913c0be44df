#include "tools/sealserver/ThreadStack.h"

#include <pthread.h>

// The default is the limit of the main thread's stack, and 2 MiB where that has none.
void RequireServingStack() {
    pthread_attr_t attributes;
    if (pthread_getattr_default_np(&attributes) != 0) return;
    std::size_t size = 0;
    if (pthread_attr_getstacksize(&attributes, &size) == 0 && size < kServingStackBytes &&
        pthread_attr_setstacksize(&attributes, kServingStackBytes) == 0)
        pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
}
