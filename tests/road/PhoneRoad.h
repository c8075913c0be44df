// PhoneRoad.h - a phone that the library scans with, on the road of one stamp.
#pragma once

#include <string>

#include "components/certservice/ScanPhone.h"
#include "road/RoadTest.h"

class PhoneRoad : public RoadTest {
protected:
    PhoneRoad();
    ~PhoneRoad() override;

    // A phone with a person's key, that accepts what is asked.
    void MakePhone(KeyKind kind);
    void SetAnswer(ScanAnswer answer);
    // Files that the phone brings.
    void Bring(const std::string& name, const std::string& content);
    void BringGmSeal(const std::string& name = "SEAL01");

    // The person's, as it lies on the phone.
    std::string Certificate();
    // What the device shows at this moment.
    static std::string Files();
    static std::string Selected();

    KeyFolder m_phone;
};
