#include <optional>

#include "core/c_interface/dates.hpp"
#include "core/c_interface/handles.hpp"
#include "core/c_interface/json.hpp"

using namespace orbinel;
using namespace orbinel::c_interface;

orbinel_event* orbinel_event_create(const char* name) {
    forgetError();
    return newHandle<orbinel_event>(OrbinelEvent(name));
}

orbinel_event* orbinel_event_copy(const orbinel_event* event) { return copyOf(event); }

void orbinel_event_free(orbinel_event* event) { delete event; }

void orbinel_event_add_parameter_with_string(orbinel_event* event, const char* key, const char* value) {
    on(__func__, event, [&](auto& object) { object.addParameterWithString(key, value); });
}

void orbinel_event_add_parameter_with_int(orbinel_event* event, const char* key, int32_t value) {
    on(__func__, event, [&](auto& object) { object.addParameterWithInt(key, value); });
}

void orbinel_event_add_parameter_with_double(orbinel_event* event, const char* key, double value) {
    on(__func__, event, [&](auto& object) { object.addParameterWithDouble(key, value); });
}

void orbinel_event_add_parameter_with_boolean(orbinel_event* event, const char* key, bool value) {
    on(__func__, event, [&](auto& object) { object.addParameterWithBoolean(key, value); });
}

void orbinel_event_add_parameter_with_date(orbinel_event* event, const char* key, const double* value) {
    on(__func__, event, [&](auto& object) { object.addParameterWithDate(key, dateOf(value)); });
}

void orbinel_event_add_parameter_with_array(orbinel_event* event, const char* key, const char* value) {
    on(__func__, event, [&](auto& object) { object.addParameterWithArray(key, arrayOf("value", value)); });
}

void orbinel_event_add_parameters(orbinel_event* event, const char* parameters) {
    on(__func__, event, [&](auto& object) { object.addParameters(dictionaryOf("parameters", parameters)); });
}

void orbinel_event_build(orbinel_event* event) {
    on(__func__, event, [](auto& object) { object.build(); });
}

char* orbinel_event_get_name(const orbinel_event* event) {
    return lookAtText(__func__, event, [](const auto& object) { return object.getName(); });
}

char* orbinel_event_get_parameters(const orbinel_event* event) {
    return lookAtJson(__func__, event, [](const auto& object) { return object.getParameters(); });
}

bool orbinel_event_is_internal(const orbinel_event* event) {
    return look(__func__, event, false, [](const auto& object) { return object.isInternal(); });
}
