#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/http.hpp"

namespace orbinel::platform {

/// Hands every request on to another HTTP service; derive from it to watch requests or make one fail.
class ForwardingHttp : public Http {
public:
    explicit ForwardingHttp(std::shared_ptr<Http> target) : target_(std::move(target)) {}

    Ticket send(HttpRequest request, HttpCompletion completion) noexcept override {
        return target_->send(std::move(request), std::move(completion));
    }

protected:
    const std::shared_ptr<Http> target_;
};

}  // namespace orbinel::platform
