#include "apps/orbinel/backend/identities.hpp"

#include <glib.h>

#include <algorithm>

#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/backend/payload_reader.hpp"
#include "apps/orbinel/backend/uuid.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

constexpr std::size_t maxIdentifiers = 50'000;
constexpr std::size_t maxIdentifiersOfRequest = 50;
constexpr std::size_t maxLength = 500;  // bytes of a name, a value, a partner or an ID

bool hasFormOfId(const std::string& text) {
    return !text.empty() && text.size() <= maxLength && g_ascii_isalnum(text.front()) &&
           std::all_of(text.begin(), text.end(), [](char c) { return g_ascii_isalnum(c) || c == '-' || c == '.'; });
}

template <typename Identifiers>
std::string newIdOf(const std::string& partner, const Identifiers& identifiers) {
    std::string joined = partner + '\n';
    for (const auto& [name, value] : identifiers) joined += name + '=' + value + '\n';
    gchar* checksum =
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(joined.data()), joined.size());
    std::string id(checksum, 32);
    g_free(checksum);
    for (const std::size_t at : {20u, 16u, 12u, 8u}) id.insert(at, 1, '-');
    return id;
}

template <typename Identifiers>
void writeIdentifiers(JsonWriter& writer, const Identifiers& identifiers) {
    writer.StartObject();
    for (auto at = identifiers.begin(); at != identifiers.end();) {
        const auto& name = at->first;
        writer.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
        writer.StartArray();
        for (; at != identifiers.end() && at->first == name; ++at) writeText(writer, at->second);
        writer.EndArray();
    }
    writer.EndObject();
}

}  // namespace

/// Texts and numbers; what is longer than anybody's identifier is none.
std::set<Identities::Identifier> Identities::identifiersOf(const rapidjson::Value& payload) {
    std::set<Identifier> found;
    const auto* identifiers = PayloadReader(payload).object("identifiers");
    if (identifiers == nullptr) return found;
    for (const auto& [name, value] : identifiers->GetObject()) {
        if (found.size() == maxIdentifiersOfRequest) break;
        if (!value.IsString() && !value.IsNumber()) continue;
        Identifier identifier{textOf(name), value.IsString() ? textOf(value) : compactJson(value)};
        const bool usable =
            !identifier.second.empty() && identifier.second.size() <= maxLength && identifier.first.size() <= maxLength;
        if (usable) found.insert(std::move(identifier));
    }
    return found;
}

std::string Identities::idFor(const rapidjson::Value& payload) {
    PayloadReader reader(payload);
    if (const auto identifiers = identifiersOf(payload); !identifiers.empty()) {
        const auto partner = reader.text("partner").substr(0, maxLength);
        const MutexLock lock(mutex_);
        auto id = people_.at(personOf(partner, identifiers)).id;
        forgetTheFirst();
        return id;
    }
    auto own = reader.text("orbinel_id");
    return hasFormOfId(own) ? own : freshUuid();
}

/// Everybody who is known under one of the identifiers is the person of them that came first.
Identities::Number Identities::personOf(const std::string& partner, const std::set<Identifier>& identifiers) {
    std::set<Number> known;
    for (const auto& identifier : identifiers) {
        const auto found = byIdentifier_.find({partner, identifier});
        if (found != byIdentifier_.end()) known.insert(found->second);
    }
    if (known.empty()) {
        people_[++last_] = {newIdOf(partner, identifiers), partner, {}};
        known.insert(last_);
    }
    const auto first = *known.begin();
    give(first, identifiers);
    known.erase(first);
    for (const auto other : known) {
        give(first, people_.at(other).identifiers);
        people_.erase(other);
    }
    return first;
}

void Identities::give(Number number, const std::set<Identifier>& identifiers) {
    auto& person = people_.at(number);
    for (const auto& identifier : identifiers) {
        person.identifiers.insert(identifier);
        byIdentifier_[{person.partner, identifier}] = number;
    }
}

void Identities::forgetTheFirst() {
    while (byIdentifier_.size() > maxIdentifiers) {
        const auto first = people_.begin();
        for (const auto& identifier : first->second.identifiers) {
            byIdentifier_.erase({first->second.partner, identifier});
        }
        people_.erase(first);
    }
}

std::string Identities::asJson() const {
    const MutexLock lock(mutex_);
    return jsonOf(
        [&](JsonWriter& writer, const auto& people) {
            writer.StartArray();
            for (const auto& [number, person] : people) {
                writer.StartObject();
                writeMember(writer, "id", person.id);
                writeMember(writer, "partner", person.partner);
                writer.Key("identifiers");
                writeIdentifiers(writer, person.identifiers);
                writer.EndObject();
            }
            writer.EndArray();
        },
        people_);
}

void Identities::clear() {
    const MutexLock lock(mutex_);
    people_.clear();
    byIdentifier_.clear();
}

}  // namespace orbinel::tool
