#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace shop {

/// Tells whoever follows a part of the model that it is different now. Followers stay as long as the model does.
class Changes {
public:
    void follow(std::function<void()> follower) { followers_.push_back(std::move(follower)); }

    void tell() const {
        for (const auto& follower : followers_) follower();
    }

private:
    std::vector<std::function<void()>> followers_;
};

}  // namespace shop
