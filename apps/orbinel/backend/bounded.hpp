#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <utility>

namespace orbinel::tool {

/// A list that forgets what came first once it holds more elements or bytes than it may. Threads: the owner's lock.
template <typename Element>
class BoundedList {
public:
    BoundedList(std::size_t maxElements, std::size_t maxBytes) : maxElements_(maxElements), maxBytes_(maxBytes) {}

    void add(Element element, std::size_t bytes) {
        entries_.emplace_back(std::move(element), bytes);
        bytes_ += bytes;
        while (entries_.size() > maxElements_ || bytes_ > maxBytes_) {
            bytes_ -= entries_.front().second;
            entries_.pop_front();
        }
    }

    void clear() {
        entries_.clear();
        bytes_ = 0;
    }

    /// Calls `visit` with each element, oldest first.
    template <typename Visit>
    void forEach(const Visit& visit) const {
        for (const auto& [element, bytes] : entries_) visit(element);
    }

private:
    const std::size_t maxElements_;
    const std::size_t maxBytes_;
    std::deque<std::pair<Element, std::size_t>> entries_;
    std::size_t bytes_ = 0;
};

/// What belongs to a key, for the last keys that were new. Threads: the owner's lock.
template <typename Content>
class BoundedMap {
public:
    explicit BoundedMap(std::size_t maxKeys) : maxKeys_(maxKeys) {}

    [[nodiscard]] Content* find(const std::string& key) {
        const auto found = contents_.find(key);
        return found == contents_.end() ? nullptr : &found->second;
    }

    /// The content of the key, a new one where there is none yet.
    Content& at(const std::string& key) {
        const auto [found, isNew] = contents_.try_emplace(key);
        if (isNew) keys_.push_back(key);
        if (keys_.size() > maxKeys_) {
            contents_.erase(keys_.front());
            keys_.pop_front();
        }
        return found->second;
    }

    void clear() {
        contents_.clear();
        keys_.clear();
    }

    /// Calls `visit` with each key and its content, oldest first.
    template <typename Visit>
    void forEach(const Visit& visit) const {
        for (const auto& key : keys_) visit(key, contents_.at(key));
    }

private:
    const std::size_t maxKeys_;
    std::map<std::string, Content> contents_;
    std::deque<std::string> keys_;
};

}  // namespace orbinel::tool
