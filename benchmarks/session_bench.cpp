#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <chrono>
#include <future>
#include <thread>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"

namespace orbinel::bench {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int events = 100;

double secondsSince(Clock::time_point begin) { return std::chrono::duration<double>(Clock::now() - begin).count(); }

bool startIsAnswered(World& world) { return world.inapps.startRequestCompleted(); }

/// From entering the background until the loopback server has answered: the main thread waits for just that.
void EnteringTheBackground(benchmark::State& state) {
    const AnsweringServer server;
    RunningLibrary library(server.origin());
    for (auto _ : state) {
        library.post(platform::notification_names::didBecomeActive);
        library.runUntil([&] { return startIsAnswered(library.world()); });
        for (int i = 0; i < events; ++i) tagTypicalEvent(i);
        const auto begin = Clock::now();
        library.post(platform::notification_names::didEnterBackground);
        state.SetIterationTime(secondsSince(begin));
    }
}
BENCHMARK(EnteringTheBackground)->UseManualTime()->Iterations(200);

/// The same envelope: serialised, scrambled and posted through the same HTTP service from another thread.
void PostingTheSameEnvelope(benchmark::State& state) {
    const AnsweringServer server;
    RunningLibrary library(server.origin());
    auto& world = library.world();
    const auto stop = typicalStop(events);
    for (auto _ : state) {
        std::promise<void> answered;
        const auto begin = Clock::now();
        const auto json = world.services.json->serialise(stop, platform::JsonStyle::compact);
        const auto envelope = world.encryptor.getEncryptedPayloadForData(*json, "1767225600");
        platform::HttpRequest request;
        request.url = world.endpoints.sessionStop();
        request.body = *world.services.json->serialise(envelope, platform::JsonStyle::compact);
        request.headers = {{"Content-Length", std::to_string(request.body.size())}};
        auto ticket =
            world.services.http->send(std::move(request), [&](const platform::HttpOutcome&) { answered.set_value(); });
        answered.get_future().wait();
        state.SetIterationTime(secondsSince(begin));
    }
}
BENCHMARK(PostingTheSameEnvelope)->UseManualTime()->Iterations(200);

const RatioLine background(
    {"entering the background with 100 events until it is answered / (serialise, scramble, POST)",
     "EnteringTheBackground", "PostingTheSameEnvelope", 2.0});

void Envelope(benchmark::State& state) {
    RunningLibrary library;
    const std::string body(100'000, 'x');
    for (auto _ : state) {
        benchmark::DoNotOptimize(library.world().encryptor.getEncryptedPayloadForData(body, "1767225600"));
    }
}
BENCHMARK(Envelope);

void TwoBase64Passes(benchmark::State& state) {
    RunningLibrary library;
    const auto& base64 = *library.world().services.base64;
    const std::string body(100'000, 'x');
    for (auto _ : state) benchmark::DoNotOptimize(base64.encode(base64.encode(body)));
}
BENCHMARK(TwoBase64Passes);

const RatioLine envelope({"an envelope of 100 KB / its two base64 passes", "Envelope", "TwoBase64Passes", 1.5});

void SerialisingASession(benchmark::State& state) {
    RunningLibrary library;
    const auto& json = *library.world().services.json;
    const auto stop = typicalStop(events);
    for (auto _ : state) benchmark::DoNotOptimize(json.serialise(stop, platform::JsonStyle::compact));
}
BENCHMARK(SerialisingASession);

void RapidJsonAcceptWriter(benchmark::State& state) {
    RunningLibrary library;
    const auto text = *library.world().services.json->serialise(typicalStop(events), platform::JsonStyle::compact);
    rapidjson::Document document;
    document.Parse(text.c_str());
    for (auto _ : state) {
        rapidjson::StringBuffer buffer;
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        document.Accept(writer);
        benchmark::DoNotOptimize(buffer.GetString());
    }
}
BENCHMARK(RapidJsonAcceptWriter);

const RatioLine json({"JSON of a session of 100 events / RapidJSON's Document::Accept(Writer)", "SerialisingASession",
                      "RapidJsonAcceptWriter", 1.25});

}  // namespace
}  // namespace orbinel::bench
