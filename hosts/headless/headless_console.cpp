#include "orbinel/headless/headless_console.hpp"

#include <utility>

#include "base/mutex.hpp"

namespace orbinel::headless {

struct HeadlessConsole::State {
    explicit State(Reader r) : reader(std::move(r)) {}

    const Reader reader;
    Mutex mutex;
    std::vector<std::string> lines ORBINEL_GUARDED_BY(mutex);
};

HeadlessConsole::HeadlessConsole() : HeadlessConsole(Reader{}) {}
HeadlessConsole::HeadlessConsole(Reader reader) : state_(std::make_unique<State>(std::move(reader))) {}
HeadlessConsole::~HeadlessConsole() = default;

std::vector<std::string> HeadlessConsole::lines() const {
    const MutexLock lock(state_->mutex);
    return state_->lines;
}

void HeadlessConsole::clear() {
    const MutexLock lock(state_->mutex);
    state_->lines.clear();
}

void HeadlessConsole::writeLine(std::string_view line) noexcept {
    if (state_->reader) {
        state_->reader(line);
        return;
    }
    const MutexLock lock(state_->mutex);
    state_->lines.emplace_back(line);
}

}  // namespace orbinel::headless
