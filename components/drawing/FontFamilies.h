// FontFamilies.h - families that stand in for one another.
#pragma once

#include <string>
#include <vector>

// The families to look for where `family` is wished, UTF-8, the best first: itself, those of the
// same style of Chinese type (宋体, 黑体, 楷体, 仿宋) under the names of Windows and of free fonts,
// then 宋体 and 黑体 with theirs. A name of another style, or an empty one, has no kin but those.
// Names compare without regard to the case of ASCII letters.
std::vector<std::string> FontFamilies(const std::string& family);
