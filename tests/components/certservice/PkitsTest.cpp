#include <openssl/pem.h>

#include <filesystem>
#include <map>
#include <set>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceTest.h"

namespace {

// The Public Key Interoperability Test Suite's certificates and lists. A case is accepted if the
// certificate is good without a list, if for each issuer above it one of that issuer's lists leaves
// it good, and if none of them says that it is revoked.
class PkitsTest : public ServiceTest {
protected:
    PkitsTest() {
        for (const auto& entry : std::filesystem::directory_iterator(PKITS_FOLDER "/certs")) {
            const std::string name = entry.path().stem().string();
            const std::string der = ReadFile(entry.path().string());
            if (name.ends_with("EE")) {
                m_cases[name.substr(0, name.size() - 2)] = der;
                continue;
            }
            WriteFile(Path("trust/" + name), der);
            const CertificateHandle certificate = ParseCertificate(der);
            m_issuers[Name(X509_get_subject_name(certificate.get()))].insert(
                Name(X509_get_issuer_name(certificate.get())));
        }
        for (const auto& entry : std::filesystem::directory_iterator(PKITS_FOLDER "/crls")) {
            const std::string der = ReadFile(entry.path().string());
            const auto* cursor = Bytes(der);
            const RevocationListHandle list(d2i_X509_CRL(nullptr, &cursor, Size(der)));
            m_lists.emplace(Name(X509_CRL_get_issuer(list.get())), der);
        }
    }

    // For comparing, as the rules for names have it.
    static unsigned long Name(const X509_NAME* name) {
        return X509_NAME_hash_ex(name, nullptr, nullptr, nullptr);
    }

    bool IsVouchedFor(const std::string& certificate, unsigned long issuer) {
        const bool isItsOwn =
            issuer == Name(X509_get_issuer_name(ParseCertificate(certificate).get()));
        bool vouched = false;
        const auto [first, last] = m_lists.equal_range(issuer);
        for (auto list = first; list != last; ++list) {
            EXPECT_EQ(SetRevocationList(m_context, list->second), 0);
            // The first certificate that is asked about has to be of the list's issuer.
            if (!isItsOwn) Validate(m_context, certificate);
            const int verdict = Validate(m_context, certificate);
            if (verdict == -3 || verdict == -6) return false;
            vouched = vouched || verdict == 0;
        }
        return vouched;
    }

    bool Accepted(const std::string& certificate) {
        EXPECT_EQ(SetUserConfig(m_context, 5, ""), 0);
        if (Validate(m_context, certificate) != 0) return false;
        std::set<unsigned long> seen;
        std::set<unsigned long> open = {
            Name(X509_get_issuer_name(ParseCertificate(certificate).get()))};
        while (!open.empty()) {
            const unsigned long issuer = *open.begin();
            open.erase(open.begin());
            if (!seen.insert(issuer).second) continue;
            if (!IsVouchedFor(certificate, issuer)) return false;
            open.insert(m_issuers[issuer].begin(), m_issuers[issuer].end());
        }
        return true;
    }

    std::map<std::string, std::string> m_cases;
    std::map<unsigned long, std::set<unsigned long>> m_issuers;  // of an authority's name
    std::multimap<unsigned long, std::string> m_lists;           // by their issuer
    void* m_context = Open();
};

// Bad for every policy that may be asked for, without saying so in their names.
const std::set<std::string> kInvalid = {
    "DifferentPoliciesTest12", "DifferentPoliciesTest4", "DifferentPoliciesTest5",
    "DifferentPoliciesTest7",  "DifferentPoliciesTest8", "DifferentPoliciesTest9",
};

// Revocation stays undecided, or the key can't be used: a good path is refused.
const std::set<std::string> kRefused = {
    // An authority's certificates with other keys under the same name, and lists signed by one of
    // them alone.
    "ValidBasicSelfIssuedCRLSigningKeyTest6",
    "ValidBasicSelfIssuedNewWithOldTest3",
    "ValidBasicSelfIssuedNewWithOldTest4",
    "ValidBasicSelfIssuedOldWithNewTest1",
    "ValidDNnameConstraintsTest19",
    "ValidSelfIssuedinhibitAnyPolicyTest7",
    "ValidSelfIssuedinhibitAnyPolicyTest9",
    "ValidSelfIssuedinhibitPolicyMappingTest7",
    "ValidSelfIssuedpathLenConstraintTest15",
    "ValidSelfIssuedpathLenConstraintTest17",
    "ValidSelfIssuedrequireExplicitPolicyTest6",
    "ValidSeparateCertificateandCRLKeysTest19",
    // DSA.
    "ValidDSAParameterInheritanceTest5",
    "ValidDSASignaturesTest4",
    // Indirect lists, and those of another issuer.
    "ValidIDPwithindirectCRLTest22",
    "ValidIDPwithindirectCRLTest24",
    "ValidIDPwithindirectCRLTest25",
    "ValidcRLIssuerTest28",
    "ValidcRLIssuerTest29",
    "ValidcRLIssuerTest30",
    "ValidcRLIssuerTest33",
    // A delta list that takes a revocation back, lists for some reasons each, names of places
    // relative to the issuer's.
    "ValiddeltaCRLTest5",
    "ValidonlySomeReasonsTest18",
    "ValidonlySomeReasonsTest19",
    "ValiddistributionPointTest4",
    "ValiddistributionPointTest5",
    "ValiddistributionPointTest7",
};

TEST_F(PkitsTest, EveryCaseIsJudgedAsTheSuiteExpectsButForWhatIsntSupported) {
    ASSERT_EQ(m_cases.size(), 223u);
    for (const auto& [name, certificate] : m_cases) {
        const bool good = !name.starts_with("Invalid") && !kInvalid.count(name);
        EXPECT_EQ(Accepted(certificate), good && !kRefused.count(name)) << name;
    }
}

}  // namespace
