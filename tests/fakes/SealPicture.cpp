// The stand-in of the seal picture library.
#include "platform/closed/SealPicture.h"

#include "fakes/Recorder.h"

using fakes::Recorder;

namespace {

fakes::Answer SamePicture(const fakes::Call& call) {
    fakes::Answer answer;
    answer.output = call.arguments[0];
    return answer;
}

}  // namespace

int MR_Init(void) { return Recorder("MR_Init").Finish(); }

int MR_Release(void) { return Recorder("MR_Release").Finish(); }

int AddWatermarkOnEseal(const unsigned char* picture, int pictureLen, unsigned char* out,
                        int* outLen) {
    Recorder recorder("AddWatermarkOnEseal");
    return recorder.Bytes(picture, pictureLen).Output(out, outLen).Finish(SamePicture);
}

int SealFormatConvert(const unsigned char* picture, int pictureLen, unsigned char* out,
                      int* outLen) {
    Recorder recorder("SealFormatConvert");
    return recorder.Bytes(picture, pictureLen).Output(out, outLen).Finish(SamePicture);
}
