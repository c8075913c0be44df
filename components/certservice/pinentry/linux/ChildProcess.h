// ChildProcess.h - starts a helper program and sees it off.
#pragma once

#include <sys/types.h>

#include <string>

// Starts `program` without arguments, `connection` being its standard input and output. It gets
// /dev/null as standard error, no other descriptor, and every signal in its first state. Its
// process id, or -1 if it can't be started.
pid_t StartChild(const std::string& program, int connection);

// Waits until the child ends, kills it after `milliseconds`, and clears it away. Harmless if the
// host has waited for all its children itself.
void EndChild(pid_t child, int milliseconds);
