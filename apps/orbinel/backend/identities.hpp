#pragma once

#include <rapidjson/document.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "apps/orbinel/backend/inspectable.hpp"
#include "base/mutex.hpp"

namespace orbinel::tool {

/// The people that identity requests spoke of. Identifiers that came in one request belong to one person, so whoever
/// logs in with an e-mail address, then with it and a phone number, then with the number alone, stays one person.
///
/// Threads: any. Bounds: 50,000 identifiers of at most 500 bytes, 50 of one request; who came first is forgotten first.
class Identities final : public Inspectable {
public:
    /// The ID that a request is answered with. With identifiers: that of the person who is known under one of them; of
    /// a new person, it depends on the partner and the identifiers alone, so that it is the same in every run. Without:
    /// the request's own "orbinel_id" where it has the form of one, else a new one.
    [[nodiscard]] std::string idFor(const rapidjson::Value& payload);

    [[nodiscard]] std::string asJson() const override;
    void clear() override;

private:
    using Identifier = std::pair<std::string, std::string>;  // name, value
    using Number = std::uint64_t;                            // counts people, so the smaller came first

    struct Person {
        std::string id;
        std::string partner;
        std::set<Identifier> identifiers;
    };
    using Key = std::pair<std::string, Identifier>;  // the partner's

    static std::set<Identifier> identifiersOf(const rapidjson::Value& payload);

    Number personOf(const std::string& partner, const std::set<Identifier>& identifiers) ORBINEL_REQUIRES(mutex_);
    void give(Number person, const std::set<Identifier>& identifiers) ORBINEL_REQUIRES(mutex_);
    void forgetTheFirst() ORBINEL_REQUIRES(mutex_);

    mutable Mutex mutex_;
    std::map<Number, Person> people_ ORBINEL_GUARDED_BY(mutex_);
    std::map<Key, Number> byIdentifier_ ORBINEL_GUARDED_BY(mutex_);
    Number last_ ORBINEL_GUARDED_BY(mutex_) = 0;
};

}  // namespace orbinel::tool
