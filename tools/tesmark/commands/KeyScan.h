// KeyScan.h - `tesmark key scan`: the phone that this machine scans with.
#pragma once

#include "Declare.h"

void DeclareKeyScan(CLI::App& parent, Invocation& invocation);
