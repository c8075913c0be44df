// BigPdf.h - a document of any size to measure with.
#pragma once

#include <cstddef>
#include <string>

// Writes a PDF of one page beside whose objects a stream of `size` bytes stands. Nothing in it
// repeats, so that no file system makes it smaller. False if it can't be written.
bool WriteBigPdf(const std::string& path, std::size_t size);
