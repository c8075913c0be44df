#include "tests/components/seallibrary/HandMade.h"

std::string Der(int tag, std::string_view content) {
    std::string der(1, static_cast<char>(tag));
    const std::size_t size = content.size();
    if (size < 0x80) {
        der += static_cast<char>(size);
    } else if (size < 0x100) {
        der += '\x81';
        der += static_cast<char>(size);
    } else {
        der += '\x82';
        der += static_cast<char>(size >> 8);
        der += static_cast<char>(size);
    }
    return der.append(content);
}

std::string DerBits(std::string_view bytes, char unusedBits) {
    return Der(0x03, std::string(1, unusedBits).append(bytes));
}

const std::string kSm2Oid = Der(0x06, "\x2A\x81\x1C\xCF\x55\x01\x83\x75");
const std::string kRsaOid = Der(0x06, "\x2A\x86\x48\x86\xF7\x0D\x01\x01\x0B");

namespace {

std::string Sign(const TestIdentity& identity, std::string_view data, bool bare) {
    const std::string signature = SignAs(identity, data);
    return bare ? BareSm2(signature) : signature;
}

std::string Behind(const BehindValue& stamp, std::string_view value) {
    return stamp ? stamp(value) : std::string();
}

std::string Property(const HandMadeSeal& seal, const TestIdentity& signer) {
    const std::string list =
        seal.certList.empty() ? Der(0x30, Der(0x04, signer.certificate)) : seal.certList;
    return Der(0x30, Der(0x02, "\x01") + Der(seal.nameTag, seal.name) +
                         (seal.form2014 ? "" : seal.certListType) + list +
                         Der(seal.dateTag, seal.createDate) + Der(seal.dateTag, seal.validStart) +
                         Der(seal.dateTag, seal.validEnd));
}

std::string Info(const HandMadeSeal& seal, const TestIdentity& signer) {
    const std::string header =
        Der(0x30, seal.mark + Der(0x02, std::string(1, seal.version)) + Der(seal.textTag, "OTHER"));
    const std::string picture = Der(0x30, Der(seal.textTag, seal.pictureType) +
                                              Der(0x04, seal.picture) + seal.width + seal.height);
    return Der(0x30,
               header + Der(seal.textTag, "42") + Property(seal, signer) + picture + seal.extDatas);
}

}  // namespace

std::string Build(const HandMadeSeal& seal, const TestIdentity& maker, const TestIdentity& signer) {
    const std::string info = Info(seal, signer);
    const std::string tail = Der(0x04, maker.certificate) + seal.algorithm;
    const std::string signedPart = seal.form2014 ? Der(0x30, info + tail) : info;
    const std::string made = Sign(maker, signedPart, seal.bareSignature);
    const std::string value = DerBits(made, seal.unusedBits);
    const std::string behind = seal.behindSignature + Behind(seal.stamp, made);
    if (seal.form2014) return Der(0x30, info + Der(0x30, tail + value) + behind);
    return Der(0x30, info + tail + value + behind);
}

std::string Build(const HandMadeSignature& signature, const TestIdentity& signer) {
    const std::string who = Der(0x04, signer.certificate) + signature.algorithm;
    const std::string usual = signature.form2014 ? "\x01" : "\x04";
    const std::string version = signature.version.empty() ? usual : signature.version;
    const std::string toSign = Der(0x30, Der(0x02, version) + signature.seal + signature.timeInfo +
                                             DerBits(signature.dataHash) + signature.property +
                                             (signature.form2014 ? who : ""));
    const std::string made = Sign(signer, toSign, signature.bareSignature);
    const std::string value = DerBits(made, signature.unusedBits);
    const std::string behind = signature.behindSignature + Behind(signature.stamp, made);
    return Der(0x30, toSign + (signature.form2014 ? "" : who) + value + behind);
}
