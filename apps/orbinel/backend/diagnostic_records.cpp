#include "apps/orbinel/backend/diagnostic_records.hpp"

#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/backend/payload_reader.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {

void DiagnosticRecords::add(const rapidjson::Value& batch) {
    const auto* logs = PayloadReader(batch).list("logs");
    if (logs == nullptr) return;
    const auto at = now();
    const MutexLock lock(mutex_);
    for (const auto& log : logs->GetArray()) {
        Record record{at, compactJson(log)};
        const auto bytes = sizeof(Record) + record.json.size();
        records_.add(std::move(record), bytes);
    }
}

std::string DiagnosticRecords::asJson() const {
    const MutexLock lock(mutex_);
    return jsonOf(
        [&](JsonWriter& writer, const auto& records) {
            writer.StartArray();
            records.forEach([&](const Record& record) {
                writer.StartObject();
                writer.Key("received");
                writer.Double(record.at);
                writer.Key("record");
                writeJson(writer, record.json);
                writer.EndObject();
            });
            writer.EndArray();
        },
        records_);
}

void DiagnosticRecords::clear() {
    const MutexLock lock(mutex_);
    records_.clear();
}

}  // namespace orbinel::tool
