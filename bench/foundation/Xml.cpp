// Answers of the online seal service, read to their last leaf, against pugixml and rapidxml; and
// the memory that the largest of them takes.

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <pugixml.hpp>
#include <rapidxml/rapidxml.hpp>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "foundation/XmlDocument.h"

namespace {

constexpr std::size_t kSeal = 1'000'000;
constexpr std::size_t kLargeSeal = 10'000'000;
constexpr int kManySeals = 10'000;
// Times the document, its copy in the reader and the copy of the leaf together.
constexpr double kMemoryGoal = 2.0;

std::string SealAnswer(std::size_t size) {
    constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text = "<ROOT><STATUSCODE>200</STATUSCODE><SEAL>";
    unsigned int state = 1;
    for (std::size_t i = 0; i < size; ++i) {
        state = state * 1664525 + 1013904223;
        text += kAlphabet[state >> 26];
    }
    return text + "</SEAL></ROOT>";
}

// `lineEnd` stands behind each tag that a leaf's text doesn't follow.
std::string ListAnswer(int seals, const std::string& lineEnd) {
    std::string text = "<ROOT>" + lineEnd + "<STATUSCODE>200</STATUSCODE>" + lineEnd + "<COUNT>" +
                       std::to_string(seals) + "</COUNT>" + lineEnd;
    for (int i = 0; i < seals; ++i) {
        text += "<SEALINFO>" + lineEnd + "<SEALNUM>" + std::to_string(7001 + i) + "</SEALNUM>" +
                lineEnd + "<SEALNAME>" + (i % 2 == 0 ? "财务专用章" : "合同专用章") +
                "</SEALNAME>" + lineEnd + "</SEALINFO>" + lineEnd;
    }
    return text + "</ROOT>" + lineEnd;
}

const std::string g_seal = SealAnswer(kSeal);

struct Entry {
    std::string number;
    std::string name;
};

std::string OurSeal(const std::string& answer) {
    XmlDocument document;
    document.Load(answer.c_str());
    document.FindElement(nullptr);
    document.EnterElement();
    document.FindElement("STATUSCODE");
    if (document.GetElementText() != "200") return {};
    document.FindElement("SEAL");
    return document.GetElementText();
}

std::string PugiSeal(const std::string& answer) {
    pugi::xml_document document;
    document.load_buffer(answer.data(), answer.size());
    const pugi::xml_node root = document.first_child();
    const pugi::xml_node status = root.child("STATUSCODE");
    if (std::string(status.child_value()) != "200") return {};
    return status.next_sibling("SEAL").child_value();
}

void OurList(const std::string& answer, std::vector<Entry>& list) {
    XmlDocument document;
    document.Load(answer.c_str());
    document.FindElement(nullptr);
    document.EnterElement();
    document.FindElement("STATUSCODE");
    if (document.GetElementText() != "200") return;
    document.FindElement("COUNT");
    if (document.GetElementText() != std::to_string(list.size())) return;
    for (Entry& entry : list) {
        document.FindElement("SEALINFO");
        document.EnterElement();
        document.FindElement("SEALNUM");
        entry.number = document.GetElementText();
        document.FindElement("SEALNAME");
        entry.name = document.GetElementText();
        document.LeaveElement();
    }
}

void PugiList(const std::string& answer, std::vector<Entry>& list) {
    pugi::xml_document document;
    document.load_buffer(answer.data(), answer.size());
    const pugi::xml_node status = document.first_child().child("STATUSCODE");
    if (std::string(status.child_value()) != "200") return;
    pugi::xml_node node = status.next_sibling("COUNT");
    if (std::string(node.child_value()) != std::to_string(list.size())) return;
    for (Entry& entry : list) {
        node = node.next_sibling("SEALINFO");
        const pugi::xml_node number = node.child("SEALNUM");
        entry.number = number.child_value();
        entry.name = number.next_sibling("SEALNAME").child_value();
    }
}

std::string Value(const rapidxml::xml_node<>* node) { return {node->value(), node->value_size()}; }

// It writes into the text, which therefore is copied, as the others do themselves.
void RapidList(const std::string& answer, std::vector<Entry>& list) {
    std::string text = answer;
    rapidxml::xml_document<> document;
    document.parse<0>(text.data());
    const rapidxml::xml_node<>* node = document.first_node()->first_node("STATUSCODE");
    if (Value(node) != "200") return;
    node = node->next_sibling("COUNT");
    if (Value(node) != std::to_string(list.size())) return;
    for (Entry& entry : list) {
        node = node->next_sibling("SEALINFO");
        const rapidxml::xml_node<>* const number = node->first_node("SEALNUM");
        entry.number = Value(number);
        entry.name = Value(number->next_sibling("SEALNAME"));
    }
}

template <std::string (*read)(const std::string&)>
void Seal(benchmark::State& state) {
    for (auto _ : state) {
        if (read(g_seal).size() != kSeal) state.SkipWithError("not read");
    }
}
BENCHMARK(Seal<OurSeal>)->Name("Seal");
BENCHMARK(Seal<PugiSeal>)->Name("PugixmlSeal");

constexpr char kOnOneLine[] = "";
constexpr char kOnLines[] = "\r\n";  // as the service writes it

template <void (*read)(const std::string&, std::vector<Entry>&), int count, const char* lineEnd>
void List(benchmark::State& state) {
    const std::string answer = ListAnswer(count, lineEnd);
    std::vector<Entry> list(count);
    for (auto _ : state) {
        read(answer, list);
        if (list.back().name.size() != sizeof "财务专用章" - 1) state.SkipWithError("not read");
    }
}
BENCHMARK(List<OurList, kManySeals, kOnOneLine>)->Name("List");
BENCHMARK(List<PugiList, kManySeals, kOnOneLine>)->Name("PugixmlList");
BENCHMARK(List<RapidList, kManySeals, kOnOneLine>)->Name("RapidxmlList");
BENCHMARK(List<OurList, 2, kOnOneLine>)->Name("Small");
BENCHMARK(List<PugiList, 2, kOnOneLine>)->Name("PugixmlSmall");
BENCHMARK(List<RapidList, 2, kOnOneLine>)->Name("RapidxmlSmall");
BENCHMARK(List<OurList, 2, kOnLines>)->Name("Lines");
BENCHMARK(List<PugiList, 2, kOnLines>)->Name("PugixmlLines");
BENCHMARK(List<RapidList, 2, kOnLines>)->Name("RapidxmlLines");

long PeakKiB() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long peak = 0;
        if (word == "VmHWM:" && status >> peak) return peak;
    }
    return -1;
}

// What reading takes beyond what the process had before, in a process of its own.
double TimesTheDocument(const std::string& answer, std::string (*read)(const std::string&)) {
    int ends[2];
    if (pipe(ends) != 0) return -1;
    const pid_t child = fork();
    if (child == 0) {
        // Writing "5" there lets the system begin a new maximum.
        std::ofstream("/proc/self/clear_refs") << "5";
        const long before = PeakKiB();
        const bool isRead = read(answer).size() == kLargeSeal;
        const long more = isRead ? PeakKiB() - before : -1;
        const bool isWritten = write(ends[1], &more, sizeof more) == sizeof more;
        _exit(isWritten ? 0 : 1);
    }
    close(ends[1]);
    long more = -1;
    if (::read(ends[0], &more, sizeof more) != sizeof more) more = -1;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return more < 0 ? -1 : static_cast<double>(more) * 1024 / static_cast<double>(answer.size());
}

bool CheckMemory() {
    const std::string answer = SealAnswer(kLargeSeal);
    const double ours = TimesTheDocument(answer, OurSeal);
    const double peer = TimesTheDocument(answer, PugiSeal);
    // Pages are counted whole.
    const bool reached = ours > 0 && ours <= kMemoryGoal + 0.005;
    std::printf("%-40s %5.2f times the document, pugixml %.2f, goal %.2f%s\n", "10 MB: peak memory",
                ours, peer, kMemoryGoal, reached ? "" : ": MISSED");
    return reached;
}

}  // namespace

int main(int count, char** arguments) {
    const bool isSmall = CheckMemory();
    const int result = RunRatios(count, arguments,
                                 {{"a seal of 1 MB", "Seal", "PugixmlSeal", 0.5},
                                  {"a list of 10,000 seals", "List", "RapidxmlList", 0.75},
                                  {"the same", "List", "PugixmlList", 0.75},
                                  {"a list of 2 seals, 207 bytes", "Small", "PugixmlSmall", 0.5},
                                  {"the same", "Small", "RapidxmlSmall", 1.0},
                                  {"the same on lines, 231 bytes", "Lines", "PugixmlLines", 0.5},
                                  {"the same", "Lines", "RapidxmlLines", 1.0}});
    return result != 0 || !isSmall ? 1 : 0;
}
