// ConfigOnline.h - `tesmark config online`.
#pragma once

#include "Commands.h"

void DeclareConfigOnline(CLI::App& config, Invocation& invocation);
