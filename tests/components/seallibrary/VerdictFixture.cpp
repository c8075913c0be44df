#include "tests/components/seallibrary/VerdictFixture.h"

std::ostream& operator<<(std::ostream& out, const SealVerdict& verdict) {
    return out << std::hex << verdict.code << " at " << StepText(verdict.failed);
}

bool operator==(const SealVerdict& left, const SealVerdict& right) {
    return left.code == right.code && left.failed == right.failed;
}
