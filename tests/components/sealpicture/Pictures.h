// Pictures.h - pictures made and read by libgd itself.
#pragma once

#include <gd.h>

#include <memory>
#include <string>

struct Destroy {
    void operator()(gdImage* image) const { gdImageDestroy(image); }
};
using Image = std::unique_ptr<gdImage, Destroy>;

template <typename Encode>
std::string FileOf(const Image& image, Encode encode) {
    int size = 0;
    void* const bytes = encode(image.get(), &size);
    const std::string file(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
    gdFree(bytes);
    return file;
}

inline std::string Png(const Image& image) { return FileOf(image, gdImagePngPtr); }
inline std::string Gif(const Image& image) { return FileOf(image, gdImageGifPtr); }
inline std::string Jpeg(const Image& image) {
    return FileOf(image, [](gdImage* i, int* size) { return gdImageJpegPtr(i, size, 95); });
}
inline std::string Bmp(const Image& image) {
    return FileOf(image, [](gdImage* i, int* size) { return gdImageBmpPtr(i, size, 0); });
}

// Null if it can't be read.
template <typename Decode>
Image ReadBy(Decode decode, const std::string& file) {
    return Image(decode(static_cast<int>(file.size()), const_cast<char*>(file.data())));
}
inline Image ReadGif(const std::string& file) { return ReadBy(gdImageCreateFromGifPtr, file); }
inline Image ReadPng(const std::string& file) { return ReadBy(gdImageCreateFromPngPtr, file); }
inline Image ReadJpeg(const std::string& file) { return ReadBy(gdImageCreateFromJpegPtr, file); }
inline Image ReadBmp(const std::string& file) { return ReadBy(gdImageCreateFromBmpPtr, file); }
