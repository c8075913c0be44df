#include "fakes/Recorder.h"
#include "fakes/World.h"
#include "platform/closed/CertService.h"

int SOF_GetLastLoginCertID(void* context, const char* certId, unsigned char* out, int* outLen) {
    fakes::Recorder recorder("SOF_GetLastLoginCertID");
    recorder.Context(context).Text(certId).Output(out, outLen);
    return recorder.Finish([](const fakes::Call& call) {
        fakes::Answer answer;
        answer.output = call.arguments[0];
        return answer;
    });
}
