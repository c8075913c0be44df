// EsealBase.h - readers of one seal file: name, picture, size.
#pragma once

#include <string>

// Used through its derived classes, as short-lived local objects.
class CEsealBase {
public:
    // Delivers the picture: a null `picBuffer` asks for its length, which goes to `*picLength`;
    // otherwise `*picLength` is the buffer's capacity, over which the copy refuses to run, and
    // stays as it is. After a result of 0 the name and the size hold their values.
    virtual int PraseEseal(unsigned char* picBuffer, int* picLength);

    std::string m_sealData;  // the whole file
    std::string m_sealName;  // GBK
    int m_picWidth = -1;
    int m_picHeight = -1;

protected:
    CEsealBase(const unsigned char* seal, int sealLen);
    ~CEsealBase() = default;
};

// The old "ES" file. -3003 if it doesn't begin with those two bytes, ends before its header or the
// promised picture, or promises a negative length.
class CEsealDefalult : public CEsealBase {
public:
    CEsealDefalult(const unsigned char* seal, int sealLen) : CEsealBase(seal, sealLen) {}
    int PraseEseal(unsigned char* picBuffer, int* picLength) override;
};

// The national formats, read by the seal library, whose codes pass through.
class CEsealGM : public CEsealBase {
public:
    CEsealGM(const unsigned char* seal, int sealLen) : CEsealBase(seal, sealLen) {}
    int PraseEseal(unsigned char* picBuffer, int* picLength) override;
};

class CEsealGB : public CEsealBase {
public:
    CEsealGB(const unsigned char* seal, int sealLen) : CEsealBase(seal, sealLen) {}
    int PraseEseal(unsigned char* picBuffer, int* picLength) override;
};
