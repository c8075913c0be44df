// ScanFiles.h - the files that a scan by phone has left in its device, read as seals.
#pragma once

#include <string>
#include <vector>

// Splits `list` (name "&&&", repeated) and keeps the names of seal files. 0 if it holds no "&&&" at
// all, else 1.
int praseEnumPZMFiles(const std::string& list, std::vector<std::string>& files);

// Reads the files and appends their seals to g_pzmSealItems, which owns their buffers: for an old
// "ES" file and a bare picture, both of type 0, the picture alone; for the national-cryptography
// format, of type 1, the file too. Sizes that a seal doesn't tell are -1. The result tells the last
// file: 0, -1 if its size and -2 if its bytes couldn't be had, or the code of its picture. -3 ends
// the reading: a file with the name of the old format that isn't one or ends too early.
int GetPZMEsealList(const std::vector<std::string>& files, const char* certId);
