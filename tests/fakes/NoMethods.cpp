// A library with nothing of its own.
