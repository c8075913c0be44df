#include "commands/ExamineExchange.h"

#include <filesystem>
#include <fstream>

#include "PathText.h"
#include "Settings.h"
#include "TerminalText.h"
#include "components/http/Address.h"

namespace {

// libcurl reads it anew for each connection, and makes none without a certificate in it.
std::string FaultOfCaFile(const std::string& name, const std::string& path) {
    std::error_code error;
    std::ifstream file(FileAt(path), std::ios::binary);
    if (!file || std::filesystem::is_directory(FileAt(path), error)) {
        return name + " can't be read: " + Printable(path) + ".";
    }
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("-----BEGIN ") && line.find("CERTIFICATE") != std::string::npos) {
            return {};
        }
    }
    return name + " holds no certificate in PEM: " + Printable(path) + ".";
}

void ExamineProxy(Findings& findings, const ExchangeMaker& maker) {
    const std::string name = std::string(maker.prefix) + "Proxy";
    const std::string proxy = ReadSetting(FindSetting(name)).value_or("");
    const std::string fault = proxy.empty() ? "" : FaultOfProxy(proxy);
    if (fault.empty()) return;
    findings.Problem(
        maker.subject,
        name + " can't be used: " + Printable(WithoutPasswords(proxy)) + ": " + fault + ".",
        "tesmark config set " + name + " http://HOST:PORT, or unset it");
}

void ExamineCaFile(Findings& findings, const ExchangeMaker& maker) {
    const std::string name = std::string(maker.prefix) + "CaFile";
    const std::string path = ReadSetting(FindSetting(name)).value_or("");
    const std::string fault = path.empty() ? "" : FaultOfCaFile(name, path);
    if (fault.empty()) return;
    findings.Problem(maker.subject, fault, "tesmark config set " + name + " FILE, or unset it");
}

// As it is taken, but for the limit; `given` is false where the default holds.
unsigned long Seconds(const std::string& name, bool& given) {
    const Setting& setting = FindSetting(name);
    const unsigned long seconds = std::stoul(ReadSetting(setting).value_or("0"));
    given = seconds != 0;
    return given ? seconds : std::stoul(setting.absent);
}

void ExamineOrder(Findings& findings, const ExchangeMaker& maker) {
    const std::string connect = std::string(maker.prefix) + "ConnectTimeout";
    const std::string whole = std::string(maker.prefix) + "Timeout";
    bool given = false;
    bool wholeGiven = false;
    const unsigned long toConnect = Seconds(connect, given);
    const unsigned long most = Seconds(whole, wholeGiven);
    if (!given || toConnect <= most) return;
    findings.Problem(maker.subject,
                     connect + " is " + std::to_string(toConnect) +
                         " seconds; the whole exchange ends after " + std::to_string(most) + ".",
                     "tesmark config unset " + connect + ", or set " + whole + " higher");
}

}  // namespace

void ExamineNumber(Findings& findings, const ExchangeMaker& maker, const std::string& name,
                   const std::string& unit) {
    const Setting& setting = FindSetting(name);
    if (IsUnreadable(setting)) {
        findings.Problem(
            maker.subject,
            name + " is no number; " + maker.name + " takes " + setting.absent + " " + unit + ".",
            "tesmark config set " + name + " " + setting.absent);
        return;
    }
    const auto value = ReadSetting(setting);
    if (!value || std::stoul(*value) <= setting.largest) return;
    const std::string most = std::to_string(setting.largest);
    findings.Problem(
        maker.subject,
        name + " is " + *value + " " + unit + "; " + maker.name + " takes " + most + " at most.",
        "tesmark config set " + name + " " + most);
}

void ExamineExchange(Findings& findings, const ExchangeMaker& maker) {
    const std::size_t before = findings.Problems();
    ExamineProxy(findings, maker);
    ExamineCaFile(findings, maker);
    ExamineNumber(findings, maker, std::string(maker.prefix) + "ConnectTimeout", "seconds");
    ExamineNumber(findings, maker, std::string(maker.prefix) + "Timeout", "seconds");
    if (findings.Problems() == before) ExamineOrder(findings, maker);
}
