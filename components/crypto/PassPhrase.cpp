#include "components/crypto/PassPhrase.h"

int NoPassPhrase(char*, int, int, void*) { return -1; }
