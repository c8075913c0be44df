#include "pdf/SecurityStore.h"

#include <algorithm>
#include <set>

namespace {

// Streams, which stand in a list by reference only. Not read: one that can't be spoils nothing but
// itself.
bool IsListOfStreams(QPDFObjectHandle object) {
    if (!object.isArray()) return false;
    const auto items = object.getArrayAsVector();
    return std::all_of(items.begin(), items.end(),
                       [](QPDFObjectHandle item) { return item.isIndirect(); });
}

// A dictionary for each signature.
bool IsVri(QPDFObjectHandle object) {
    if (!object.isDictionary()) return false;
    const auto entries = object.getDictAsMap();
    return std::all_of(entries.begin(), entries.end(), [](const auto& entry) {
        QPDFObjectHandle value = entry.second;
        return value.isIndirect() || value.isDictionary() ||
               (entry.first == "/Type" && value.isName());
    });
}

// "/ADBE_Key" or "/ADBE:Key".
bool HasMakersPrefix(const std::string& key) {
    return key.size() > 6 && (key[5] == '_' || key[5] == ':');
}

bool IsStoreEntry(const std::string& key, QPDFObjectHandle value) {
    if (HasMakersPrefix(key)) return true;
    if (key == "/Type") return value.isNull() || (value.isName() && value.getName() == "/DSS");
    if (!IsSecurityStoreKey(key)) return false;
    return value.isNull() || (key == "/VRI" ? IsVri(value) : IsListOfStreams(value));
}

bool IsStoreOrNothing(QPDFObjectHandle object) { return object.isNull() || object.isDictionary(); }

QPDFObjectHandle EntryOf(QPDFObjectHandle store, const std::string& key) {
    return store.isNull() ? store : store.getKey(key);
}

}  // namespace

bool IsSecurityStoreKey(const std::string& key) {
    return key == "/VRI" || key == "/Certs" || key == "/CRLs" || key == "/OCSPs";
}

bool SecurityStoreGrew(QPDFObjectHandle before, QPDFObjectHandle now) {
    if (!IsStoreOrNothing(before) || !IsStoreOrNothing(now)) return false;
    std::set<std::string> keys;
    if (before.isDictionary()) keys.merge(before.getKeys());
    if (now.isDictionary()) keys.merge(now.getKeys());
    return std::all_of(keys.begin(), keys.end(), [&](const std::string& key) {
        auto value = EntryOf(now, key);
        return EntryOf(before, key).unparse() == value.unparse() || IsStoreEntry(key, value);
    });
}

bool SecurityStoreEntryGrew(QPDFObjectHandle before, QPDFObjectHandle now) {
    return (IsListOfStreams(before) && IsListOfStreams(now)) || (IsVri(before) && IsVri(now));
}
