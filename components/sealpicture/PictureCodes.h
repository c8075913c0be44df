// PictureCodes.h - the results of the seal picture library, one cause to a code.
#pragma once

// AddWatermarkOnEseal gives these negated.
enum PictureCode : int {
    kPictureOk = 0,
    kPictureBadArgument = 0x0D000001,
    kPictureBufferTooSmall = 0x0D000002,  // the length needed has been told
    kPictureNoDecoder = 0x0D000004,       // libgd can't be opened
    kPictureUnknownFormat = 0x0D000010,   // neither GIF nor PNG, JPEG or BMP
    kPictureTooLarge = 0x0D000011,
    kPictureDamaged = 0x0D000012,
    kPictureNoMemory = 0x0D000013,
    kPicturePartialFrame = 0x0D000014,  // a GIF whose first frame doesn't fill it can't be marked
};
