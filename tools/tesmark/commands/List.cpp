#include <string>

#include "CertServiceClient.h"
#include "Declare.h"
#include "Inventory.h"
#include "Library.h"
#include "TerminalText.h"
#include "commands/InventoryJson.h"

namespace {

struct Options {};

Report List(const Options&) {
    const LibrarySession library;
    const CertServiceClient service;
    const auto certificates = ListCertificates(service, WithSeals::kYes);
    Report report;
    report.json["certificates"] = InventoryJson(certificates);
    report.text = InventoryText(certificates, "");
    if (certificates.empty()) report.text = "no key is present\n";
    return report;
}

void Bind(CLI::App&, Options&) {}

}  // namespace

void DeclareList(CLI::App& parent, Invocation& invocation) {
    AddCommand<Options>(parent, invocation, "list",
                        "Show the certificates on all keys, with their seals",
                        "  tesmark list\n"
                        "  tesmark list --json",
                        Bind, List);
}
