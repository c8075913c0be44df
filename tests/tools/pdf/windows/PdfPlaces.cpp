#include "tools/pdf/PdfFixture.h"

std::string DevicePath() { return "NUL"; }

// No blocks are ever shared.
std::string PathOfOtherBlocks(const std::string& folder) { return folder + "\\holes"; }
