// Verdicts.h - the service's verdicts that refuse a certificate, and the codes that tell so.
#pragma once

#include "TesmarkOpt.h"

struct Verdict {
    int value;
    int code;
};

inline constexpr Verdict kRefusals[] = {{-1, TESMARK_NOT_TRUSTED},
                                        {-2, TESMARK_CERT_EXPIRED},
                                        {-5, TESMARK_CERT_EXPIRED},
                                        {-3, TESMARK_CERT_REVOKED},
                                        {-6, TESMARK_CERT_REVOKED}};
