#pragma once

#include <memory>
#include <optional>
#include <string>

#include "orbinel/export.hpp"
#include "orbinel/library_part.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

class EventParameters;
class EventRecorder;

/// One event that the application reports: a name, and parameters attached by chained calls, finished by `build`.
///
///     Orbinel::tagEvent("purchase").addParameterWithString("sku", "a1").addParameterWithDouble("price", 9.5).build();
///
/// Keys and names are a lower-case ASCII letter followed by lower-case ASCII letters, digits and underscores, of any
/// length. A refused key or value is skipped silently; `Orbinel::setDevelopmentLog` tells why. A later call with the
/// same key replaces the value. Nothing is thrown; once the library has been shut down, nothing is recorded any more.
///
/// Threads: any. One event may be used by several threads; the order in which they add is then theirs to see to.
class ORBINEL_API OrbinelEvent {
public:
    /// An event of the library that is started at this moment. The name is only checked by `build`.
    explicit OrbinelEvent(OptionalText name) noexcept;
    OrbinelEvent(LibraryPart<EventRecorder> recorder, OptionalText name, bool isInternal) noexcept;

    /// A copy has parameters of its own: what is added to one does not show in the other.
    OrbinelEvent(const OrbinelEvent& other) noexcept;
    OrbinelEvent& operator=(const OrbinelEvent& other) noexcept;
    OrbinelEvent(OrbinelEvent&&) noexcept;
    OrbinelEvent& operator=(OrbinelEvent&&) noexcept;
    ~OrbinelEvent();

    /// Text of at least one byte, UTF-8; bytes that are not are sent as U+FFFD.
    OrbinelEvent& addParameterWithString(OptionalText key, OptionalText value) & noexcept;
    OrbinelEvent&& addParameterWithString(OptionalText key, OptionalText value) && noexcept;

    /// A whole number above zero; zero and negative numbers are skipped.
    OrbinelEvent& addParameterWithInt(OptionalText key, std::int32_t value) & noexcept;
    OrbinelEvent&& addParameterWithInt(OptionalText key, std::int32_t value) && noexcept;

    /// A finite number.
    OrbinelEvent& addParameterWithDouble(OptionalText key, double value) & noexcept;
    OrbinelEvent&& addParameterWithDouble(OptionalText key, double value) && noexcept;

    OrbinelEvent& addParameterWithBoolean(OptionalText key, bool value) & noexcept;
    OrbinelEvent&& addParameterWithBoolean(OptionalText key, bool value) && noexcept;

    /// A moment; sent as "yyyy-MM-dd'T'HH:mm:ss.SSS'Z'" with the digits of the device's local time.
    OrbinelEvent& addParameterWithDate(OptionalText key, std::optional<Date> value) & noexcept;
    OrbinelEvent&& addParameterWithDate(OptionalText key, std::optional<Date> value) && noexcept;

    /// Only the texts among the elements are kept; the list may become empty.
    OrbinelEvent& addParameterWithArray(OptionalText key, const Array& value) & noexcept;
    OrbinelEvent&& addParameterWithArray(OptionalText key, const Array& value) && noexcept;

    /// Adds every entry by its own kind: text, 32-bit integer (of any sign), other number, boolean, date, array.
    OrbinelEvent& addParameters(const Dictionary& parameters) & noexcept;
    OrbinelEvent&& addParameters(const Dictionary& parameters) && noexcept;

    /// Stores the event in the current session, with the current time. Does nothing when the name is not valid or the
    /// session has used up its budget of 100 events, to which those that the library makes itself count
    /// ("session_start", pages, cart, recommendations), but no purchases. May be called again, and then stores the
    /// event again; parameters added after it are still sent, as long as the session is open.
    void build() noexcept;

    [[nodiscard]] std::string getName() const noexcept;

    /// A copy of the parameters as they are now.
    [[nodiscard]] Dictionary getParameters() const noexcept;

    /// Whether the library made the event itself.
    [[nodiscard]] bool isInternal() const noexcept { return isInternal_; }

private:
    template <typename MakeValue>
    void store(const char* operation, OptionalText key, MakeValue&& makeValue) noexcept;
    template <typename Step>
    void visit(const char* operation, Step&& step) noexcept;

    LibraryPart<EventRecorder> recorder_;
    std::string name_;
    std::shared_ptr<EventParameters> parameters_;
    bool isInternal_ = false;
};

}  // namespace orbinel
