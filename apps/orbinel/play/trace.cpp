#include "apps/orbinel/play/trace.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "apps/orbinel/play/pretty_entry.hpp"
#include "apps/orbinel/play/traceable.hpp"
#include "hosts/common/rapidjson_json.hpp"

namespace orbinel::tool {

Trace::Trace(const platform::Scheduler& clock, std::ostream& out, Form form)
    : clock_(clock), start_(clock.now()), form_(form), out_(out) {}

void Trace::write(Dictionary entry) { add(entry, Source::caller); }

void Trace::writeNetwork(Dictionary entry) { add(entry, Source::network); }

void Trace::add(const Dictionary& entry, Source source) {
    Dictionary stamped{{"at", clock_.now()}};
    for (const auto& [key, value] : entry) stamped.set(key, traceable(value));
    const MutexLock lock(mutex_);
    const bool acting = acting_ == std::this_thread::get_id() && source == Source::caller;
    if (acting_ != std::thread::id() && !acting) {
        waiting_.emplace_back(std::move(stamped));
    } else {
        put(std::move(stamped));
    }
}

void Trace::put(Value entry) {
    if (form_ == Form::pretty) {
        out_ << prettyEntry(*entry.ifDictionary(), start_);
    } else {
        out_ << hosts::RapidJson().serialise(entry, platform::JsonStyle::compact).value_or("{}") << '\n';
    }
    out_.flush();
    entries_.push_back(std::move(entry));
}

Trace::Action::Action(Trace& trace) : trace_(trace) {
    const MutexLock lock(trace_.mutex_);
    trace_.acting_ = std::this_thread::get_id();
}

Trace::Action::~Action() {
    const MutexLock lock(trace_.mutex_);
    trace_.acting_ = {};
    for (auto& entry : std::exchange(trace_.waiting_, {})) trace_.put(std::move(entry));
}

void Trace::mark() {
    const MutexLock lock(mutex_);
    mark_ = entries_.size();
}

std::size_t Trace::count(const EntryPattern& pattern) const {
    const MutexLock lock(mutex_);
    const auto first = entries_.begin() + static_cast<std::ptrdiff_t>(mark_);
    return static_cast<std::size_t>(
        std::count_if(first, entries_.end(), [&](const Value& entry) { return pattern.matches(entry); }));
}

}  // namespace orbinel::tool
