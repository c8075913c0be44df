// StampPeer.h - what stamping a large PDF has to do at least, as a process of its own.
#pragma once

// Arguments: a hash ("sm3" or "sha256"), "wait" or "leave", input and output. Copies the input into
// a file beside the output, hashes the copy once, with "wait" waits until it is on the disk, and
// gives it the output's name. 0 on success.
int RunStampPeer(char** arguments);
