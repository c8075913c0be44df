#include "tests/tools/sealserver/StoreFixture.h"

#include "components/seallibrary/EsSeal.h"

namespace {

// Two dots of one colour.
constexpr char kGif[] =
    "GIF89a\x02\x00\x01\x00\x80\x00\x00\xFF\x00\x00\xFF\xFF\xFF,"
    "\x00\x00\x00\x00\x02\x00\x01\x00\x00"
    "\x02\x02\x84\x0A\x00;";

}  // namespace

const TestIdentity& StoreFixture::Maker() {
    static const TestIdentity identity =
        MakeIdentity(KeyKind::kSm2, {.name = "Maker", .serial = 0x5678});
    return identity;
}

const TestIdentity& StoreFixture::Signer() {
    static const TestIdentity identity = MakeIdentity(KeyKind::kSm2, {.name = "Signer"});
    return identity;
}

std::string StoreFixture::NationalSeal(SealForm form) {
    SealOrder order = UsualOrder(form, Signer());
    order.picture.assign(kGif, sizeof kGif - 1);
    return MakeTestSeal(order, Maker());
}

std::string StoreFixture::EsSeal(const std::string& nameGbk) {
    return MakeEsSeal(nameGbk, std::string(kGif, sizeof kGif - 1));
}
