// tesmark-tsa: a time-stamp authority on the loopback address, for development and the demo.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <future>
#include <stdexcept>
#include <string>

#include "components/certservice/Certificate.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/DurableFile.h"
#include "components/certservice/Places.h"
#include "platform/Files.h"
#include "support/LoopbackServer.h"
#include "tools/timestampauthority/TimeStampAuthority.h"

namespace {

std::string In(const std::string& folder, const char* name) {
    return folder + platform::PathSeparator() + name;
}

// The authority below the development CA in that folder, which is made if need be.
std::unique_ptr<TimeStampAuthority> Open(const std::string& caFolder,
                                         const std::string& trustFolder) {
    int code = 0;
    const auto ca = DevelopmentCa::Open(KeyKind::kRsa, caFolder, trustFolder, code);
    if (!ca) throw std::runtime_error("the development CA can't be had: " + caFolder);
    const CertificateHandle issuer = ParseCertificate(ca->Certificate());
    auto authority = TimeStampAuthority::Make(issuer.get(), ca->Key());
    if (!authority) throw std::runtime_error("the authority's certificate can't be made");
    return authority;
}

// With a folder of its own: ca.pem there is what others are to trust.
std::unique_ptr<TimeStampAuthority> OpenIn(const std::string& folder) {
    auto authority = Open(folder, folder);
    std::string pem;
    if (!ReadWholeFile(In(folder, "velmora-development-rsa.pem"), pem) ||
        !WriteDurably(In(folder, "ca.pem"), pem, true)) {
        throw std::runtime_error("ca.pem can't be written in " + folder);
    }
    return authority;
}

void Serve(TimeStampAuthority& authority, int port, const std::string& trusted) {
    const LoopbackServer server(
        [&authority](const LoopbackServer::Request& request) {
            return request.head.starts_with("POST ")
                       ? authority.HttpAnswer(request.body)
                       : LoopbackServer::Page("405 Method Not Allowed", "", "Allow: POST\r\n");
        },
        LoopbackServer::Scheme::Http, port);
    std::printf("%s\n%s\n", server.Url("/").c_str(), trusted.c_str());
    std::fflush(stdout);
    std::promise<void>().get_future().wait();
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App program(
        "A time-stamp authority on the loopback address, for development.\nPrints its address, "
        "and the file of the certificate that its certificate is below; serves until it is ended.");
    int port = 0;
    std::string folder;
    program.add_option("--port", port, "The port; 0 is one that is free")
        ->check(CLI::Range(0, 65'535));
    program.add_option("--folder", folder,
                       "Where its CA is kept, as ca.pem for others; without it the CA of this "
                       "machine's development keys is used, which is trusted already");
    CLI11_PARSE(program, argc, argv);
    try {
        const auto authority =
            folder.empty() ? Open(CaFolderPath(), TrustFolderPath()) : OpenIn(folder);
        Serve(*authority, port,
              folder.empty() ? In(TrustFolderPath(), "velmora-development-rsa.pem")
                             : In(folder, "ca.pem"));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tesmark-tsa: %s\n", failure.what());
    }
    return 1;
}
