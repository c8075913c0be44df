// PictureDelivery.h - the end of each reader: the picture or its length goes to the caller.
#pragma once

#include <string_view>

// A null `picBuffer` gets the length alone. A picture that is larger than the capacity in
// `*picLength` isn't copied.
inline void DeliverPicture(std::string_view picture, unsigned char* picBuffer, int* picLength) {
    if (picBuffer == nullptr) {
        *picLength = static_cast<int>(picture.size());
    } else if (static_cast<int>(picture.size()) <= *picLength) {
        picture.copy(reinterpret_cast<char*>(picBuffer), picture.size());
    }
}
