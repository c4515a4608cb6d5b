#include "apps/orbinel/play/repeated_key.hpp"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <set>
#include <vector>

namespace orbinel::tool {

namespace {

/// Stops the reader at the first key that its object has already.
class KeyWatcher : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, KeyWatcher> {
public:
    bool StartObject() {
        objects_.emplace_back();
        return true;
    }
    bool EndObject(rapidjson::SizeType) {
        objects_.pop_back();
        return true;
    }
    bool Key(const char* text, rapidjson::SizeType length, bool) {
        std::string key(text, length);
        if (objects_.back().insert(key).second) return true;
        repeated = std::move(key);
        return false;
    }

    std::optional<std::string> repeated;

private:
    std::vector<std::set<std::string>> objects_;
};

}  // namespace

std::optional<RepeatedKey> repeatedKey(std::string_view json) {
    // Numbers are not read: the reader's own conversion is slow with hostile exponents.
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::MemoryStream stream(json.data(), json.size());
    KeyWatcher watcher;
    rapidjson::Reader().Parse<flags>(stream, watcher);
    if (!watcher.repeated) return std::nullopt;
    return RepeatedKey{*watcher.repeated, stream.Tell()};
}

}  // namespace orbinel::tool
