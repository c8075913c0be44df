#include "tools/sealserver/ThreadStack.h"

void RequireServingStack() {}
