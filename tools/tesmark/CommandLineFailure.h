// CommandLineFailure.h - what is told of a command line that can't be understood.
#pragma once

#include "Failure.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

// The usage Failure of the command line that `app` has read and refused with `error`. Words that
// nobody takes are named as they were typed and in their order; a word in a command's place that is
// none is named with the command that is nearest to it, if one is near.
Failure CommandLineFailure(const CLI::App& app, const CLI::ParseError& error);
