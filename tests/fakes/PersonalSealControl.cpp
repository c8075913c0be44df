// The stand-in of the personal seal control: its methods, on every platform. Without a script each
// drawing is another picture, "drawing" with the number of the method's call.
#include "platform/closed/PersonalSealControl.h"

#include <cstdlib>
#include <cstring>

#include "fakes/CertServiceAnswers.h"
#include "fakes/DrawnPictures.h"
#include "fakes/Recorder.h"

using fakes::Answer;
using fakes::Call;
using fakes::Recorder;

namespace {

Answer NumberedDrawing(const Call& call) {
    Call bytes;
    bytes.arguments.push_back("drawing " + std::to_string(call.number));
    return fakes::Base64Text(bytes);
}

int Draw(Recorder& recorder, char** picture) {
    const Answer answer = recorder.FinishWithAnswer(NumberedDrawing);
    const std::size_t size = answer.output.size() + 1;
    *picture = nullptr;
    if (answer.size == fakes::kNullPicture) return answer.result;
    *picture = static_cast<char*>(std::malloc(size));
    if (*picture == nullptr) return -1;
    std::memcpy(*picture, answer.output.c_str(), size);
    return answer.result;
}

}  // namespace

int GetPersonalEsealByXML(const char* settingsXml, const char* text, char** pictureBase64) {
    return Draw(Recorder("GetPersonalEsealByXML").Text(settingsXml).Text(text), pictureBase64);
}

int GetPersonalEsealByCertInfo(const char* text, int width, int height, char** pictureBase64) {
    Recorder recorder("GetPersonalEsealByCertInfo");
    return Draw(recorder.Text(text).Number(width).Number(height), pictureBase64);
}

int GetPersonalEsealByContentWithXML(const char* settingsXml, const char* text,
                                     char** pictureBase64) {
    Recorder recorder("GetPersonalEsealByContentWithXML");
    return Draw(recorder.Text(settingsXml).Text(text), pictureBase64);
}

int GetPicByContent(int kind, const char* text2, const char* text1, char** pictureBase64) {
    return Draw(Recorder("GetPicByContent").Number(kind).Text(text2).Text(text1), pictureBase64);
}
