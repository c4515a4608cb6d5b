#include "core/c_interface/callbacks.hpp"

#include <cstdlib>
#include <utility>

#include "core/c_interface/json.hpp"

struct orbinel_sender {
    std::shared_ptr<orbinel::c_interface::Sender> sender;
};

namespace orbinel::c_interface {

namespace {

void call(orbinel_callback callback, void* userData, const platform::Json& json, const Value& content) {
    const std::unique_ptr<char, decltype(&std::free)> text(newJson(json, content), &std::free);
    if (text != nullptr) callback(userData, text.get());
}

// The callbacks keep the JSON service, because they may be called while the library ends.

template <typename Container>
std::function<void(const Container&)> jsonCallback(orbinel_callback callback, UserData userData) {
    if (callback == nullptr) return {};
    return [callback, userData = std::move(userData), json = jsonService()](const Container& content) {
        call(callback, userData.get(), *json, content);
    };
}

}  // namespace

std::function<void(const std::string&)> textCallback(orbinel_callback callback, UserData userData) {
    if (callback == nullptr) return {};
    return
        [callback, userData = std::move(userData)](const std::string& text) { callback(userData.get(), text.c_str()); };
}

std::function<void(const std::optional<std::string>&)> problemCallback(orbinel_callback callback, UserData userData) {
    if (callback == nullptr) return {};
    return [callback, userData = std::move(userData)](const std::optional<std::string>& problem) {
        callback(userData.get(), problem ? problem->c_str() : nullptr);
    };
}

std::function<void()> completionCallback(orbinel_completion completion, UserData userData) {
    if (completion == nullptr) return {};
    return [completion, userData = std::move(userData)] { completion(userData.get()); };
}

std::function<void(const Dictionary&)> dictionaryCallback(orbinel_callback callback, UserData userData) {
    return jsonCallback<Dictionary>(callback, std::move(userData));
}

std::function<void(const Array&)> arrayCallback(orbinel_callback callback, UserData userData) {
    return jsonCallback<Array>(callback, std::move(userData));
}

std::function<void(const Sender&, const Dictionary&)> jsonAction(orbinel_callback callback) {
    return [callback, json = jsonService()](const Sender& sender, const Dictionary& content) {
        if (callback != nullptr) call(callback, sender.userData.get(), *json, content);
    };
}

std::weak_ptr<Sender> senderOf(const orbinel_sender* sender) noexcept {
    return sender != nullptr ? sender->sender : std::weak_ptr<Sender>();
}

}  // namespace orbinel::c_interface

namespace c_interface = orbinel::c_interface;

orbinel_sender* orbinel_sender_create(void* user_data, orbinel_destroy destroy) {
    return c_interface::run(__func__, static_cast<orbinel_sender*>(nullptr), [&] {
        auto userData = c_interface::takeUserData(user_data, destroy);
        auto sender = std::make_shared<c_interface::Sender>(c_interface::Sender{std::move(userData)});
        return new orbinel_sender{std::move(sender)};
    });
}

void orbinel_sender_free(orbinel_sender* sender) { delete sender; }
