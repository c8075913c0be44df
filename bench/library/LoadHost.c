/* Loads the library that is named, as a host in C does, and prints the nanoseconds that took. */
#include <dlfcn.h>
#include <stdio.h>
#include <time.h>

int main(int count, char** arguments) {
    struct timespec before;
    struct timespec after;
    if (count != 2) return 2;
    clock_gettime(CLOCK_MONOTONIC, &before);
    if (dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL) == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    clock_gettime(CLOCK_MONOTONIC, &after);
    printf("%lld\n",
           (after.tv_sec - before.tv_sec) * 1000000000LL + after.tv_nsec - before.tv_nsec);
    return 0;
}
