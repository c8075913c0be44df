#include "commands/Findings.h"

#include <algorithm>

#include "TerminalText.h"

std::size_t Findings::Problems() const {
    return static_cast<std::size_t>(
        std::count_if(m_findings.begin(), m_findings.end(),
                      [](const Finding& finding) { return finding.problem; }));
}

Report Findings::ToReport() const {
    std::size_t width = 0;
    for (const Finding& finding : m_findings) {
        width = std::max(width, DisplayWidth(finding.subject));
    }
    Report report;
    report.json["findings"] = Json::arrayValue;
    for (const Finding& finding : m_findings) {
        report.text += (finding.problem ? "WRONG  " : "ok     ") +
                       Padded(finding.subject, width + 2) + finding.text + "\n";
        if (!finding.advice.empty()) {
            report.text += std::string(width + 9, ' ') + "-> " + finding.advice + "\n";
        }
        Json::Value json(Json::objectValue);
        json["subject"] = finding.subject;
        json["ok"] = !finding.problem;
        json["text"] = finding.text;
        if (!finding.advice.empty()) json["advice"] = finding.advice;
        report.json["findings"].append(json);
    }
    const std::size_t problems = Problems();
    report.text += problems == 0 ? "all is well\n" : CountText(problems, "problem") + "\n";
    report.json["problems"] = static_cast<Json::UInt64>(problems);
    report.exitCode = problems == 0 ? ExitCode::kOk : ExitCode::kSetup;
    return report;
}
