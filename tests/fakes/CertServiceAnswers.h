// CertServiceAnswers.h - what the certificate service answers from the world, without a script.
#pragma once

#include "fakes/Script.h"

namespace fakes {

Answer UserList(const Call& call);
Answer DeviceKind(const Call& call);
Answer FileNames(const Call& call);
Answer FileContent(const Call& call);
Answer CertificateDer(const Call& call);
Answer CertificateField(const Call& call);
Answer CertificateValidity(const Call& call);
// Of the identifier that is the call's first argument; refused if it isn't in the world.
Answer SignatureOf(const Call& call);
// 32 bytes that depend on the algorithm and the data.
Answer HashOf(const Call& call);
Answer Base64Text(const Call& call);
Answer Base64Bytes(const Call& call);

}  // namespace fakes
