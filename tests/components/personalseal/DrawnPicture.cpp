#include "components/personalseal/DrawnPicture.h"

namespace {

using Stretch = DrawnPicture::Stretch;

template <typename HasInk>
std::vector<Stretch> Stretches(int begin, int end, HasInk hasInk) {
    std::vector<Stretch> found;
    bool inside = false;
    for (int at = begin; at < end; ++at) {
        const bool ink = hasInk(at);
        if (ink && !inside) found.push_back({at, at});
        if (ink) found.back().end = at + 1;
        inside = ink;
    }
    return found;
}

}  // namespace

DrawnPicture::DrawnPicture(const std::string& png) {
    std::string problem;
    DecodePicture(png, m_picture, problem);
}

int DrawnPicture::Alpha(int x, int y) const {
    return m_picture.rgba.at(4 * (std::size_t(y) * m_picture.width + x) + 3);
}

double DrawnPicture::Ink(double left, double top, double right, double bottom) const {
    double sum = 0;
    for (int y = int(top * Height()); y < int(bottom * Height()); ++y) {
        for (int x = int(left * Width()); x < int(right * Width()); ++x) sum += Alpha(x, y);
    }
    return sum / 255;
}

std::vector<Stretch> DrawnPicture::Across(int inset) const {
    return Stretches(inset, Width() - inset, [&](int x) {
        for (int y = inset; y < Height() - inset; ++y) {
            if (Alpha(x, y) > 0) return true;
        }
        return false;
    });
}

std::vector<Stretch> DrawnPicture::Down(int inset) const {
    return Stretches(inset, Height() - inset, [&](int y) {
        for (int x = inset; x < Width() - inset; ++x) {
            if (Alpha(x, y) > 0) return true;
        }
        return false;
    });
}

int DrawnPicture::Colour() const {
    int colour = -1;
    for (std::size_t at = 0; at + 4 <= Pixels().size(); at += 4) {
        if (Pixels()[at + 3] == 0) continue;
        const int here = Pixels()[at] << 16 | Pixels()[at + 1] << 8 | Pixels()[at + 2];
        if (colour >= 0 && here != colour) return -1;
        colour = here;
    }
    return colour;
}
