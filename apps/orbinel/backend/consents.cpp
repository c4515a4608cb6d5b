#include "apps/orbinel/backend/consents.hpp"

#include <utility>
#include <variant>

#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/backend/payload_reader.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

constexpr const char* gdprMember = "gdpr_consent";
constexpr const char* mobileMember = "mobile_gdpr_consent";
constexpr std::size_t maxDeviceLength = 256;

void writeIfKnown(JsonWriter& writer, const char* name, std::optional<bool> consent) {
    if (!consent) return;
    writer.Key(name);
    writer.Bool(*consent);
}

void replaceMember(rapidjson::Document& object, const char* name, std::optional<bool> consent) {
    if (!consent) return;
    object.RemoveMember(name);
    object.AddMember(rapidjson::StringRef(name), *consent, object.GetAllocator());
}

}  // namespace

std::string deviceOf(const rapidjson::Value& payload) {
    PayloadReader reader(payload);
    const auto* target = reader.object("target");
    return target == nullptr ? std::string() : usableDevice(PayloadReader(*target).text("udid"));
}

std::string usableDevice(std::string udid) { return udid.size() > maxDeviceLength ? std::string() : std::move(udid); }

void Consents::set(const std::string& device, const rapidjson::Value& payload) {
    PayloadReader reader(payload);
    const auto gdpr = reader.truth(gdprMember);
    const auto mobile = reader.truth(mobileMember);
    const MutexLock lock(mutex_);
    auto& consent = byDevice_.at(device);
    if (gdpr) consent.gdpr = gdpr;
    if (mobile) consent.mobile = mobile;
}

Consent Consents::get(const std::string& device) {
    const MutexLock lock(mutex_);
    const auto* consent = byDevice_.find(device);
    return consent == nullptr ? Consent() : *consent;
}

std::string Consents::asJson() const {
    const MutexLock lock(mutex_);
    return jsonOf(
        [&](JsonWriter& writer, const auto& byDevice) {
            writer.StartArray();
            byDevice.forEach([&](const std::string& device, const Consent& consent) {
                writer.StartObject();
                writeMember(writer, "udid", device);
                writeIfKnown(writer, gdprMember, consent.gdpr);
                writeIfKnown(writer, mobileMember, consent.mobile);
                writer.EndObject();
            });
            writer.EndArray();
        },
        byDevice_);
}

void Consents::clear() {
    const MutexLock lock(mutex_);
    byDevice_.clear();
}

std::string consentAnswer(const Consent& posted, const std::string& neutralAnswer) {
    auto parsed = parseJson(neutralAnswer);
    auto* answer = std::get_if<rapidjson::Document>(&parsed);
    if (answer == nullptr || !answer->IsObject()) return neutralAnswer;
    replaceMember(*answer, gdprMember, posted.gdpr);
    replaceMember(*answer, mobileMember, posted.mobile);
    return compactJson(*answer);
}

}  // namespace orbinel::tool
