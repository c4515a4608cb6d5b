#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <rapidjson/document.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/apps/tool_process.hpp"
#include "tests/linux/temporary_directory.hpp"

// What a visit to the shop leaves behind, as the backend has seen it.

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;

const std::string startPath = "/api/v3/session/start";
const std::string stopPath = "/api/v3/session/stop";

/// The shop as a process of its own.
class ShopProcess {
public:
    explicit ShopProcess(std::vector<std::string> words) {
        words.insert(words.begin(), ORBINEL_SHOP);
        std::vector<char*> arguments;
        for (auto& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        pid_ = fork();
        if (pid_ == 0) {
            execv(arguments.front(), arguments.data());
            _exit(127);
        }
    }
    ~ShopProcess() {
        if (pid_ <= 0) return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    ShopProcess(const ShopProcess&) = delete;
    ShopProcess& operator=(const ShopProcess&) = delete;

    void signal(int number) const { kill(pid_, number); }

    /// The exit status, or minus the signal that ended it.
    int wait() {
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

private:
    pid_t pid_ = -1;
};

/// Every text under the key, however deep.
void gather(const rapidjson::Value& value, const char* key, std::vector<std::string>& texts) {
    if (value.IsArray()) {
        for (const auto& element : value.GetArray()) gather(element, key, texts);
    }
    if (!value.IsObject()) return;
    for (const auto& member : value.GetObject()) {
        if (member.name == key && member.value.IsString()) texts.emplace_back(member.value.GetString());
        gather(member.value, key, texts);
    }
}

class VisitedShop : public testing::Test {
protected:
    VisitedShop()
        : backend_({"backend", "--port", "0", "--answers", ORBINEL_EXAMPLES "/backend/shop", "--templates",
                    ORBINEL_EXAMPLES "/templates"}) {
        const auto line = backend_.firstLine();
        origin_ = line.substr(line.rfind(' ') + 1);
    }
    ~VisitedShop() override {
        backend_.signal(SIGTERM);
        backend_.wait();
    }

    [[nodiscard]] std::vector<std::string> words(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> all{"--endpoint", origin_, "--data-dir", (directory_.path() / "data").string()};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    /// The payloads that arrived at the path, in order.
    std::vector<const rapidjson::Value*> payloads(const std::string& path) {
        const auto response = httplib::Client(origin_).Get("/inspect/requests");
        requests_.Parse(response ? response->body.c_str() : "[]");
        std::vector<const rapidjson::Value*> found;
        for (const auto& request : requests_.GetArray()) {
            if (request["path"].GetString() == path) found.push_back(&request["payload"]);
        }
        return found;
    }

    /// Until a request to the path has arrived: the stream begins with those that have.
    void waitFor(const std::string& path) {
        std::string text;
        httplib::Client client(origin_);
        client.set_read_timeout(std::chrono::minutes(1));
        client.Get("/inspect/stream", [&](const char* bytes, std::size_t size) {
            text.append(bytes, size);
            return text.find('"' + path + '"') == std::string::npos;
        });
    }

    [[nodiscard]] static std::vector<std::string> textsOf(const rapidjson::Value& payload, const char* key) {
        std::vector<std::string> texts;
        gather(payload, key, texts);
        return texts;
    }

    const orbinel::hosts::TemporaryDirectory directory_;
    orbinel::test::ToolProcess backend_;
    std::string origin_;
    rapidjson::Document requests_;
};

/// Width and height, as the head of a PNG file has them.
std::pair<int, int> sizeOf(const std::filesystem::path& picture) {
    std::ifstream file(picture, std::ios::binary);
    std::string head(24, '\0');
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    const auto number = [&](std::size_t at) {
        int value = 0;
        for (std::size_t i = at; i < at + 4; ++i) value = value * 256 + static_cast<unsigned char>(head[i]);
        return value;
    };
    return {number(16), number(20)};
}

TEST_F(VisitedShop, TellsTheBackendWhatThePersonDid) {
    const auto pictures = directory_.path() / "pictures";
    ASSERT_EQ(ShopProcess(words({"--visit", pictures.string()})).wait(), 0);

    EXPECT_EQ(sizeOf(pictures / "01-home-phone.png"), std::pair(390, 844));
    EXPECT_EQ(sizeOf(pictures / "18-home-360.png"), std::pair(360, 740));
    EXPECT_EQ(sizeOf(pictures / "23-home-desktop.png"), std::pair(1200, 800));

    EXPECT_EQ(payloads(startPath).size(), 2u) << "one at the arrival, one at the login";
    const auto stops = payloads(stopPath);
    ASSERT_EQ(stops.size(), 2u);
    const auto before = textsOf(*stops[0], "event_name");
    EXPECT_THAT(before,
                AllOf(Contains("homepage_view"), Contains("product_detail_page_view"), Contains("item_added_to_cart"),
                      Contains("item_added_to_wishlist"), Contains("inapp_seen"), Contains("cart_page_view")));
    EXPECT_THAT(textsOf(*stops[0], "button"), ElementsAre("open_lamp"));
    EXPECT_THAT(textsOf((*stops[0])["abandoned_items"], "product_id"), ElementsAre("mug-blue", "lamp-desk"));
    const auto after = textsOf(*stops[1], "event_name");
    EXPECT_THAT(after, AllOf(Contains("checkout_done"), Contains("survey_answered")));
    EXPECT_THAT(textsOf((*stops[1])["purchased_items"], "product_id"), ElementsAre("mug-blue", "lamp-desk"));
    EXPECT_THAT(textsOf((*stops[1])["survey_results"], "answer"), ElementsAre("5", "Quality"));
}

// Whoever closes the shop, or has it closed, loses nothing of the session.
TEST_F(VisitedShop, ClosesItsSessionWhenItIsEnded) {
    ShopProcess shop(words());
    waitFor(startPath);
    ASSERT_EQ(payloads(startPath).size(), 1u);
    shop.signal(SIGTERM);
    EXPECT_EQ(shop.wait(), 0);
    const auto stops = payloads(stopPath);
    ASSERT_EQ(stops.size(), 1u);
    EXPECT_THAT(textsOf(*stops[0], "event_name"), Contains("homepage_view"));
}

}  // namespace
