#include "tools/sealserver/Commands.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "tools/sealserver/AccessLog.h"
#include "tools/sealserver/AdminSite.h"
#include "tools/sealserver/Administration.h"
#include "tools/sealserver/AskedToEnd.h"
#include "tools/sealserver/HttpServer.h"
#include "tools/sealserver/OfferedSeal.h"
#include "tools/sealserver/Password.h"
#include "tools/sealserver/SealService.h"
#include "tools/sealserver/SealStore.h"
#include "tools/tesmark/PathText.h"
#include "tools/tesmark/Terminal.h"

namespace {

struct Arguments {
    std::string database;
    HttpSettings http;
    bool plain = false;
    std::string accessLog;

    std::string certificateFile;
    std::string serial;
    std::string name;
    std::string sealFile;
    std::string number;
    std::string title;
    std::int64_t seal = 0;
};

// Up to one byte more than is allowed, so that too much of it is told apart.
std::string ReadInput(const std::string& path) {
    if (path.empty()) return {};
    std::ifstream file(FileAt(path), std::ios::binary);
    std::string content(kMaxSealFileBytes + 1, '\0');
    if (file) file.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (file.bad() || !file.is_open()) throw Refusal("The file can't be read: " + path);
    content.resize(static_cast<std::size_t>(file.gcount()));
    if (content.empty()) throw Refusal("The file is empty: " + path);
    return content;
}

void CheckOpenness(const Arguments& arguments) {
    const HttpSettings& http = arguments.http;
    if (http.certificate.empty() != http.key.empty())
        throw Refusal("--certificate and --key go together.");
    if (IsLoopback(http.address) || !http.certificate.empty() || arguments.plain) return;
    throw Refusal(
        "Beyond this machine seals and the password would cross the network in the clear: "
        "give --certificate and --key, or say --plain.");
}

void Serve(const Arguments& arguments) {
    CheckOpenness(arguments);
    SealStore store(arguments.database);
    AccessLog log(arguments.accessLog);
    SealService service(store);
    AdminSite site(
        store, [] { return std::time(nullptr); }, !arguments.http.certificate.empty());
    HttpServer server(arguments.http, service, site, log);
    std::printf("%s\n%s\n", server.Url("/").c_str(), server.Url(kServicePath).c_str());
    if (store.Setting("password").empty()) {
        const std::string password = MakePassword();
        store.SetSetting("password", HashPassword(password));
        std::printf("The administrator's password, told this once: %s\n", password.c_str());
    }
    std::fflush(stdout);
    RunUntilAskedToEnd([&server] { server.Serve(); }, [&server] { server.Stop(); });
}

void Add(const Arguments& arguments) {
    SealStore store(arguments.database);
    const std::int64_t certificate = EnterCertificate(store, ReadInput(arguments.certificateFile),
                                                      arguments.serial, arguments.name);
    if (arguments.sealFile.empty()) return;
    const std::int64_t seal = EnterSeal(
        store, certificate, {ReadInput(arguments.sealFile), arguments.number, arguments.title});
    std::printf("%lld\n", static_cast<long long>(seal));
    const std::string warning = WarningAboutSeal(store, seal);
    if (!warning.empty()) std::fprintf(stderr, "sealserver: warning: %s\n", warning.c_str());
}

// The database of a command that has nothing to do in a new one.
SealStore ExistingStore(const Arguments& arguments) {
    if (!std::filesystem::exists(FileAt(arguments.database)))
        throw Refusal("There is no file " + arguments.database + ".");
    return SealStore(arguments.database);
}

void PrintSeal(const StoredSeal& seal, const StoredCertificate& certificate) {
    std::printf("%lld\t%s\t%s\t%s\t%s\t%s\t%s\n", static_cast<long long>(seal.id),
                seal.suspended ? "suspended" : "in use", seal.number.c_str(), seal.name.c_str(),
                seal.form.c_str(), certificate.serial.c_str(), certificate.name.c_str());
}

void List(const Arguments& arguments) {
    SealStore store = ExistingStore(arguments);
    for (const StoredCertificate& certificate : store.Certificates()) {
        const auto seals = store.Seals(certificate.id);
        for (const StoredSeal& seal : seals) PrintSeal(seal, certificate);
        if (seals.empty())
            std::printf("-\tno seals\t-\t-\t-\t%s\t%s\n", certificate.serial.c_str(),
                        certificate.name.c_str());
    }
}

void Require(bool done) {
    if (!done) throw Refusal("There is no seal of that id.");
}

void Suspend(const Arguments& arguments) {
    Require(ExistingStore(arguments).SetSuspended(arguments.seal, true));
}

void Resume(const Arguments& arguments) {
    Require(ExistingStore(arguments).SetSuspended(arguments.seal, false));
}

void Remove(const Arguments& arguments) {
    Require(ExistingStore(arguments).RemoveSeal(arguments.seal));
}

std::string AskedPassword() {
    if (!StandardInputIsTerminal()) {
        std::string line;
        std::getline(std::cin, line);
        if (line.ends_with('\r')) line.pop_back();
        return line;
    }
    const auto first = ReadHidden("New password: ");
    const auto again = ReadHidden("Again: ");
    if (!first || !again || *first != *again) throw Refusal("The two passwords differ.");
    return *first;
}

// The sessions of a server that runs end with it: each knows what was kept of its password.
void SetPassword(const Arguments& arguments) {
    SealStore store(arguments.database);
    const std::string password = AskedPassword();
    if (password.size() < kShortestPassword || password.size() > kLongestPassword)
        throw Refusal("The password is too short or too long.");
    store.SetSetting("password", HashPassword(password));
}

using Command = void (*)(const Arguments&);

CLI::App* AddCommand(CLI::App& program, const char* name, const char* description,
                     Arguments& arguments, Command& chosen, Command command) {
    CLI::App* const app = program.add_subcommand(name, description);
    app->add_option("--database", arguments.database, "The file of certificates and seals")
        ->required();
    app->callback([&chosen, command] { chosen = command; });
    return app;
}

void BindServe(CLI::App& serve, Arguments& arguments) {
    serve.add_option("--address", arguments.http.address, "Where to listen")->capture_default_str();
    serve.add_option("--port", arguments.http.port, "The port; 0 is one that is free")
        ->check(CLI::Range(0, 65'535));
    serve.add_option("--certificate", arguments.http.certificate,
                     "A PEM file with the server's certificate and those above it: HTTPS");
    serve.add_option("--key", arguments.http.key, "A PEM file with the certificate's key");
    serve.add_option("--host-name", arguments.http.names,
                     "A name by which it is reached, beside localhost and numeric addresses");
    serve.add_flag("--plain", arguments.plain, "Listen beyond this machine without a certificate");
    serve.add_option("--access-log", arguments.accessLog, "Appends a line for each request");
}

void BindAdd(CLI::App& add, Arguments& arguments) {
    add.add_option("--certificate-file", arguments.certificateFile,
                   "The certificate that the seal is for, in PEM or DER");
    add.add_option("--serial", arguments.serial, "Instead: its serial number, hexadecimal");
    add.add_option("--name", arguments.name, "and its distinguished name");
    add.add_option("--seal", arguments.sealFile,
                   "The seal's file; without it the certificate alone");
    add.add_option("--number", arguments.number, "The seal's number; by itself the one in it");
    add.add_option("--title", arguments.title, "The seal's name; by itself the one in it");
}

}  // namespace

int RunSealServer(int argumentCount, const char* const* argumentTexts) {
    CLI::App program(
        "A small online seal service to develop against. It binds to this machine alone unless "
        "told "
        "otherwise.");
    program.require_subcommand(1);
    Arguments arguments;
    Command chosen = nullptr;
    const auto command = [&](const char* name, const char* description, Command run) {
        return AddCommand(program, name, description, arguments, chosen, run);
    };
    BindServe(*command("serve", "Prints its addresses and serves until it is asked to end", Serve),
              arguments);
    BindAdd(*command("add", "Adds a seal to a certificate and prints the seal's id", Add),
            arguments);
    command("list",
            "The seals: id, state, number, name, form, serial number, distinguished name; a "
            "certificate without seals has a line, too",
            List);
    for (CLI::App* const app : {command("suspend", "Gives a seal out no more", Suspend),
                                command("resume", "Gives it out again", Resume),
                                command("remove", "Removes a seal for good", Remove)})
        app->add_option("id", arguments.seal, "As list tells it")->required();
    command("password", "Sets the administrator's password, a line of standard input", SetPassword);
    CLI11_PARSE(program, argumentCount, argumentTexts);
    try {
        chosen(arguments);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "sealserver: %s\n", failure.what());
        return 1;
    }
    return 0;
}
