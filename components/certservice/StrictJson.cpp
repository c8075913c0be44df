#include "components/certservice/StrictJson.h"

#include <json/reader.h>

#include <exception>
#include <memory>

namespace {

// Objects of texts are all that is read here; the rest is told from them without going deep.
constexpr int kDeepest = 16;

std::unique_ptr<Json::CharReader> MakeReader() {
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    builder["skipBom"] = false;
    builder["stackLimit"] = kDeepest;
    return std::unique_ptr<Json::CharReader>(builder.newCharReader());
}

}  // namespace

bool ReadJsonObject(std::string_view text, Json::Value& object) {
    try {
        const bool read =
            MakeReader()->parse(text.data(), text.data() + text.size(), &object, nullptr);
        return read && object.isObject();
    } catch (const std::exception&) {
        // Thrown for what is nested too deep.
        return false;
    }
}
