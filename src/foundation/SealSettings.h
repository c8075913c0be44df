// SealSettings.h - what the values of the settings about seals mean.
#pragma once

// `bSealPosition`: where seals come from. Any other value, 0 and 2 among them, stands for the seals
// in the keys.
enum SealPosition : unsigned int {
    kOnlineService = 1,
    kNameByXml = 3,   // drawn from the certificate's name, by fixed settings
    kNameBySize = 4,  // drawn from the certificate's name, by size
};

// `ReqEsealStatus`: a seal's status is asked for at this value and no other.
constexpr int kRequestStatus = 1;
