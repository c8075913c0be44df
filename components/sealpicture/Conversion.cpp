#include "components/sealpicture/Conversion.h"

#include "components/sealpicture/GifPicture.h"
#include "components/sealpicture/PictureCodes.h"
#include "components/sealpicture/PictureFile.h"

int ConvertToGif(std::string_view picture, std::string& gif) {
    gif.clear();
    PictureFile read;
    if (const int code = ReadPictureFile(picture, read)) return code;
    if (read.header.format == PictureFormat::kGif) {
        gif = picture;
        return kPictureOk;
    }
    const CGdLibrary& gd = *CGdLibrary::Get();
    gdImage* const image = read.image.get();
    return GifOfPaint(gd, gdImageSX(image), PaintOnWhite(gd, image), gif);
}
