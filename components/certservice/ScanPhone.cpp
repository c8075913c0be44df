#include "components/certservice/ScanPhone.h"

#include <json/writer.h>

#include <array>
#include <utility>

#include "components/certservice/DurableFile.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/StrictJson.h"
#include "platform/Files.h"

namespace {

// A folder whose name begins with a dot is no key's.
constexpr char kFolder[] = ".scan";
constexpr char kRecord[] = "phone.json";

constexpr auto kAnswers =
    std::to_array<std::pair<const char*, ScanAnswer>>({{"accept", ScanAnswer::kAccept},
                                                       {"refuse", ScanAnswer::kRefuse},
                                                       {"silent", ScanAnswer::kSilent}});

std::string RecordIn(const std::string& keyFolder) {
    return ScanFolderIn(keyFolder) + platform::PathSeparator() + kRecord;
}

bool TakeText(Json::Value& object, const char* name, std::string& text) {
    Json::Value value;
    if (!object.removeMember(name, &value) || !value.isString()) return false;
    text = value.asString();
    return true;
}

}  // namespace

bool ScanAnswerOf(const std::string& name, ScanAnswer& answer) {
    for (const auto& [known, value] : kAnswers) {
        if (name != known) continue;
        answer = value;
        return true;
    }
    return false;
}

const char* NameOf(ScanAnswer answer) {
    for (const auto& [name, value] : kAnswers) {
        if (value == answer) return name;
    }
    return "";
}

std::string ScanFolderIn(const std::string& keyFolder) {
    return keyFolder + platform::PathSeparator() + kFolder;
}

bool HasScanPhone(const std::string& keyFolder) {
    return !keyFolder.empty() && platform::PathExists(RecordIn(keyFolder).c_str());
}

int ReadScanPhone(const std::string& keyFolder, ScanPhone& phone) {
    if (!HasScanPhone(keyFolder)) return kServiceNoSuchCertificate;
    std::string text;
    Json::Value object;
    ScanPhone read;
    if (!ReadWholeFile(RecordIn(keyFolder), text) || !ReadJsonObject(text, object)) {
        return kServiceKeyDamaged;
    }
    if (!TakeText(object, "person", read.person) || !TakeText(object, "pin", read.pin)) {
        return kServiceKeyDamaged;
    }
    if (object.isMember("answer")) {
        std::string answer;
        if (!TakeText(object, "answer", answer) || !ScanAnswerOf(answer, read.answer)) {
            return kServiceKeyDamaged;
        }
    }
    if (!object.empty()) return kServiceKeyDamaged;
    phone = std::move(read);
    return kServiceOk;
}

int WriteScanPhone(const std::string& keyFolder, const ScanPhone& phone) {
    Json::Value object(Json::objectValue);
    object["person"] = phone.person;
    object["pin"] = phone.pin;
    object["answer"] = NameOf(phone.answer);
    const std::string text = Json::writeString(Json::StreamWriterBuilder(), object) + "\n";
    if (!MakePrivateFolder(ScanFolderIn(keyFolder))) return kServiceFileUnreadable;
    return WriteDurably(RecordIn(keyFolder), text) ? kServiceOk : kServiceFileUnreadable;
}

int RemoveScanPhone(const std::string& keyFolder) {
    if (!HasScanPhone(keyFolder)) return kServiceNoSuchCertificate;
    platform::RemoveFile(RecordIn(keyFolder).c_str());
    return HasScanPhone(keyFolder) ? kServiceFileUnreadable : kServiceOk;
}
