#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "orbinel/headless/headless_console.hpp"
#include "tests/end_to_end/linux_library.hpp"
#include "tests/linux/temporary_directory.hpp"
#include "tests/port_contract/contract_support.hpp"

// Whatever a server, or what stands between, does to a session: the next one works, and nothing is lost or doubled.
namespace orbinel::testing {

namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

constexpr const char* json = "application/json";
constexpr const char* notAnswered = "The session start was not answered.";
constexpr const char* notADictionary = "The answer to the session start is not a dictionary.";
constexpr const char* applied = "In apps response received from backend.";

struct Hostility {
    std::string name;
    std::function<void(httplib::Response&)> write;
    bool delivers = false;  // the answer counts as one: a stop has been delivered
    const char* said = notAnswered;
    std::chrono::milliseconds timeout{std::chrono::minutes(1)};
    bool gone = false;
};

void PrintTo(const Hostility& hostility, std::ostream* stream) { *stream << hostility.name; }

Hostility body(std::string name, std::string text, const char* said) {
    return {std::move(name), [text = std::move(text)](auto& response) { response.set_content(text, json); }, true,
            said};
}

/// A body in pieces of the size given: until the limit, or without an end.
void writePieces(httplib::Response& response, std::size_t size, std::size_t all) {
    response.set_chunked_content_provider(json, [size, all](std::size_t offset, httplib::DataSink& sink) {
        if (offset < all) return sink.write(std::string(size, '{').data(), size);
        sink.done();
        return true;
    });
}

const std::vector<Hostility> hostilities{
    {"Gone", [](auto&) {}, false, notAnswered, std::chrono::minutes(1), true},
    {"Endless", [](auto& response) { writePieces(response, 1, SIZE_MAX); }, false, notAnswered,
     std::chrono::milliseconds(300)},
    {"ServerError", [](auto& response) { response.status = 500; }},
    {"TooLarge", [](auto& response) { writePieces(response, 1 << 16, (1 << 24) + 1); }},
    {"RedirectToAFile", [](auto& response) { response.set_redirect("file:///etc/passwd"); }},
    {"RedirectToItself", [](auto& response) { response.set_redirect(startPath); }},
    {"ChunksThatAreNone",
     [](auto& response) {
         response.set_header("Transfer-Encoding", "chunked");
         response.set_content("zz\r\nno chunk\r\n-1\r\n", json);
     }},
    {"CutShort",
     [](auto& response) {
         response.set_content_provider(1'000, json, [](std::size_t, std::size_t, httplib::DataSink& sink) {
             return sink.write("{", 1) && false;
         });
     }},
    body("Nothing", "", notADictionary),
    body("Garbage", std::string("\x00\x01\xfe{]", 5), notADictionary),
    body("AnArray", "[1,{},null]", notADictionary),
    body("DeeplyNested", R"({"inapps":)" + std::string(10'000, '[') + std::string(10'000, ']') + "}", notADictionary),
    body("InvalidUtf8", "{\"session_id\":\"\xff\xc0\x80\"}", notADictionary),
    body("TruncatedJson", R"({"session_id":"4","inapps":[{"inapp_id":)", notADictionary),
    body("WrongTypes",
         R"({"sdk_disabled":"yes","session_id":7,"log_flush_time_interval":"soon","is_logging_enabled":[],)"
         R"("inapps":{"a":1},"reset_iid":{},"new_id":[1],"smart_recommendations":[1],"contents":"none",)"
         R"("passive_variables":12})",
         applied),
    body("WrongTypesInside",
         R"({"log_flush_time_interval":-1e308,"session_id":null,"new_id":"\u0000","inapps":[1,null,[],)"
         R"({"inapp_id":{"a":[]},"variant_id":[]}],"contents":[7,{"variables":{},"content_id":[]}],)"
         R"("smart_recommendations":{"":null},"passive_variables":[{}]})",
         applied),
};

class HostileServer : public ::testing::TestWithParam<Hostility> {
protected:
    HostileServer() {
        library.services.console = std::make_shared<headless::HeadlessConsole>(
            [this](std::string_view line) { lines.add(std::string(line)); });
        library.launch();
        Orbinel::setDevelopmentLog(true);
    }

    void setNetwork(std::chrono::milliseconds timeout, bool gone, LoopbackBackend::Answer answer) {
        library.network->timeout = timeout;
        library.network->gone = gone;
        backend.answer(std::move(answer));
    }

    hosts::TemporaryDirectory directory;
    LoopbackBackend backend;
    contract::Gathered<std::string> lines;
    LinuxLibrary library{directory.path(), backend.origin};
};

TEST_P(HostileServer, NextSessionsWorkAndEachStopIsDeliveredOnce) {
    const auto& hostility = GetParam();
    setNetwork(hostility.timeout, hostility.gone, [&](const std::string&, httplib::Response& response) {
        hostility.write(response);
        return hostility.delivers;
    });
    ASSERT_NO_FATAL_FAILURE(library.runSession(1));
    ASSERT_NO_FATAL_FAILURE(library.runSession(2));
    const auto before = static_cast<std::ptrdiff_t>(backend.arrivals().size());
    const auto said = lines.takeAll();
    EXPECT_EQ(backend.takenNumbers().size(), hostility.delivers ? 2 : 0);

    setNetwork(std::chrono::minutes(1), false, LoopbackBackend::answerProperly);
    ASSERT_NO_FATAL_FAILURE(library.runSession(3));
    const auto taken = backend.takenNumbers();
    EXPECT_THAT(taken, UnorderedElementsAre(1, 2, 3));
    EXPECT_EQ(taken.back(), 3);
    const auto arrivals = backend.arrivals();
    std::vector<std::string> paths;
    for (auto arrival = arrivals.begin() + before; arrival != arrivals.end(); ++arrival) {
        // What counted as an ID may have to be asked for again.
        if (arrival->path != identityPath) paths.push_back(arrival->path);
    }
    if (hostility.delivers) {
        EXPECT_THAT(paths, ElementsAre(startPath, stopPath));
    } else {
        EXPECT_THAT(paths, ElementsAre(stopPath, stopPath, startPath, stopPath));
        EXPECT_THAT(said, Contains(HasSubstr("Request is added to Queue.")));
    }
    EXPECT_TRUE(library.services.defaults->standard()->value("orbinelQueue").isAbsent());
    EXPECT_THAT(said, Contains(HasSubstr(hostility.said)));
    EXPECT_THAT(said, Each(AnyOf(Not(HasSubstr("crash report")), HasSubstr(notADictionary))));
}

INSTANTIATE_TEST_SUITE_P(All, HostileServer, ::testing::ValuesIn(hostilities),
                         [](const auto& one) { return one.param.name; });

}  // namespace

}  // namespace orbinel::testing
