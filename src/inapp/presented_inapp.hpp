#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "base/mutex.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// The one message that is being presented, from the moment it was handed over until it is gone, and what has been
/// gathered about it meanwhile.
///
/// Threads: any.
class PresentedInapp {
public:
    using Record = std::shared_ptr<const Dictionary>;

    /// Makes the record the active one.
    void present(Record record);

    /// Makes the record the active one where none is.
    void presentWhereNone(Record record);

    /// The message is gone: nothing is active, nothing gathered.
    void clear();

    /// The same for this message alone: nothing where another one is active by now.
    void clear(const Record& record);

    /// The active record; nothing where there is none.
    [[nodiscard]] Record activeInapp() const;

    /// "content" of the active record; an empty dictionary where there is none.
    [[nodiscard]] Dictionary content() const;

    // While messages are to be hidden, none is handed over and none is seen.
    void setTemplatesAreSetToBeHidden(bool hidden) noexcept { templatesAreSetToBeHidden_ = hidden; }
    [[nodiscard]] bool templatesAreSetToBeHidden() const noexcept { return templatesAreSetToBeHidden_; }

    // Whether it was shown, so that its close is to be logged.
    void setShouldAddInappLog(bool should);
    [[nodiscard]] bool shouldAddInappLog() const;
    /// Asks and clears in one step, so that a close is logged once.
    [[nodiscard]] bool takeShouldAddInappLog();

    /// Counts what the page of the message sends to be kept: false where it is beyond 1 MiB in all, which no message
    /// needs and the session could not carry.
    [[nodiscard]] bool mayKeep(const Value& sent);

    // The clicks that the page has reported ("inappClickLog"). Beyond a thousand they are refused.
    [[nodiscard]] bool addClick(Dictionary click);
    [[nodiscard]] Array takeClicks();
    void clearClicks();

private:
    std::atomic<bool> templatesAreSetToBeHidden_{false};

    mutable Mutex mutex_;
    Record activeInapp_ ORBINEL_GUARDED_BY(mutex_);
    bool shouldAddInappLog_ ORBINEL_GUARDED_BY(mutex_) = false;
    Array inappClickLog_ ORBINEL_GUARDED_BY(mutex_);
    std::size_t kept_ ORBINEL_GUARDED_BY(mutex_) = 0;  // bytes, about
};

/// A record's field as text: an integer in digits; the empty text where it is missing, null or empty.
[[nodiscard]] std::string inappFieldText(const Dictionary& record, std::string_view field);

/// A record's field as an integer: of 32 bits where it fits, so that an event counts it as one, else of 64; 0 where it
/// is none.
[[nodiscard]] Value inappFieldNumber(const Dictionary& record, std::string_view field);

/// {"inapp_id", "variant_id"} of a record, both as text; of an absent record both are empty.
[[nodiscard]] Dictionary inappIdentity(const Dictionary* record);

}  // namespace orbinel
