#include "inapp/template_attributes.hpp"

#include <string>

#include "base/guard.hpp"
#include "base/number_reading.hpp"
#include "events/data_types.hpp"

namespace orbinel {

namespace values = template_values;

TemplateAttributes::TemplateAttributes(const Needs& needs)
    : reports_(needs.reports), attributes_(needs.attributes), json_(needs.json), scheduler_(needs.scheduler) {}

void TemplateAttributes::setUserAttributesFromTemplate(const Array& descriptors) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore setUserAttributesFromTemplate:]", [&] {
        for (const auto& one : descriptors) {
            if (const auto descriptor = values::descriptorOf(one)) setUserAttribute(*descriptor);
        }
    });
}

void TemplateAttributes::setCustomAttributesFromTemplate(const Array& descriptors) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore setCustomAttributesFromTemplate:]", [&] {
        for (const auto& one : descriptors) {
            if (const auto descriptor = values::descriptorOf(one)) setCustomAttribute(*descriptor);
        }
    });
}

void TemplateAttributes::setUserAttribute(const Descriptor& descriptor) {
    const auto& [type, key, value] = descriptor;
    if (type == kDataTypeDateKey) return attributes_.setUserAttributeWithDate(key, values::dateOf(value, scheduler_));
    if (type == kDataTypeBooleanKey)
        return attributes_.setUserAttributeWithBoolean(key, boolValue(value).value_or(false));
    if (type == kDataTypeIntKey) return attributes_.setUserAttributeWithInt(key, intValue(value).value_or(0));
    if (type == kDataTypeStringKey) return attributes_.setUserAttributeWithString(key, values::textOf(value, json_));
    noteSkipped(descriptor);
}

void TemplateAttributes::setCustomAttribute(const Descriptor& descriptor) {
    const auto& [type, key, value] = descriptor;
    if (type == kDataTypeDateKey) return attributes_.setCustomAttributeWithDate(key, values::dateOf(value, scheduler_));
    if (type == kDataTypeDoubleKey)
        return attributes_.setCustomAttributeWithDouble(key, doubleValue(value).value_or(0));
    if (type == kDataTypeBooleanKey)
        return attributes_.setCustomAttributeWithBoolean(key, boolValue(value).value_or(false));
    if (type == kDataTypeIntKey) return attributes_.setCustomAttributeWithInt(key, intValue(value).value_or(0));
    if (type == kDataTypeStringKey) return attributes_.setCustomAttributeWithString(key, values::textOf(value, json_));
    const auto* array = value.ifArray();
    if (type == kDataTypeArrayKey && array != nullptr) return attributes_.setCustomAttributeWithArray(key, *array);
    noteSkipped(descriptor);
}

void TemplateAttributes::noteSkipped(const Descriptor& descriptor) {
    reports_.note([&] { return "Skipped the page's attribute \"" + std::string(descriptor.key) + "\": of no type."; });
}

}  // namespace orbinel
