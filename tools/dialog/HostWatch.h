// HostWatch.h - tells that the host's process is gone, whoever else holds its end of the streams.
#pragma once

// A descriptor that polls readable as soon as the process has ended that made the socket pair which
// `stream` is an end of. The end of the stream alone doesn't tell: a process that the host has
// forked may hold the other one. -1 if `stream` is no socket, or the system can't tell. The
// caller's to close.
int WatchHost(int stream);
