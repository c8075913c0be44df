// SealPosition.h - the setting `bSealPosition`: where seals come from.
#pragma once

// Any other value, 0 and 2 among them, stands for the seals in the keys.
enum SealPosition : unsigned int {
    kOnlineService = 1,
    kNameByXml = 3,   // drawn from the certificate's name, by fixed settings
    kNameBySize = 4,  // drawn from the certificate's name, by size
};
