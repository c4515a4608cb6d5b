#include <chrono>
#include <semaphore>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"
#include "diagnostics/logger.hpp"
#include "tools/test_devices.hpp"

namespace orbinel::bench {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int records = 1'000;

/// A network at which every batch ends.
class EndOfTheWay final : public platform::Http {
public:
    platform::Ticket send(platform::HttpRequest request, platform::HttpCompletion) noexcept override {
        benchmark::DoNotOptimize(request.body.data());
        arrived_.release();
        return {};
    }
    void waitForARequest() { arrived_.acquire(); }

private:
    std::counting_semaphore<> arrived_{0};
};

/// The logger over a running library.
struct Logging {
    explicit Logging(World& w)
        : testDevices({w.reports, w.helper, w.session, w.endpoints, w.requestSender}),
          logger({w.reports, w.helper, w.session, w.identity, w.deviceAttributes, testDevices, w.endpoints, w.encryptor,
                  w.ownLifetime, *w.services.scheduler, http, *w.services.json, *w.services.console}) {
        logger.setLogFlushTimeInterval(10);
        logger.setIsLoggingEnabled(true);
        logger.setSessionId("5f2b8c1e-session");
    }

    void gather() {
        for (int i = 0; i < records; ++i) {
            logger.log(DiagnosticRecord{LogType::inapp, LogLevel::info, "In app is not shown: its limit is reached.",
                                        Dictionary{{"inapp_id", "summer-sale-42"}, {"shown", i}, {"limit", 3}}});
        }
    }

    EndOfTheWay http;
    TestDevices testDevices;
    OrbinelLogger logger;
};

/// From the timer's tick until the envelope, as the body of a request, is handed to the network.
void DiagnosticBatch(benchmark::State& state) {
    RunningLibrary library;
    Logging logging(library.world());
    for (auto _ : state) {
        logging.gather();
        const auto begin = Clock::now();
        logging.logger.prepareAndSendLogs();
        logging.http.waitForARequest();
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
    }
    shutdown();  // before the logger goes
}
BENCHMARK(DiagnosticBatch)->UseManualTime()->Iterations(30);

/// The same records, ready as one dictionary.
void EnvelopeOfTheSameRecords(benchmark::State& state) {
    RunningLibrary library;
    auto& world = library.world();
    Logging logging(world);
    logging.gather();
    Array logs;
    for (auto& log : logging.logger.flushLogs()) logs.emplace_back(toDictionary(std::move(log)));
    const Dictionary payload{{"partner_name", "acme"}, {"logs", std::move(logs)}};
    for (auto _ : state) {
        const auto json = world.services.json->serialise(payload, platform::JsonStyle::pretty);
        const auto envelope = world.encryptor.getEncryptedPayloadForData(*json, "1767225600");
        benchmark::DoNotOptimize(world.services.json->serialise(envelope, platform::JsonStyle::compact));
    }
}
BENCHMARK(EnvelopeOfTheSameRecords)->UseRealTime();

const RatioLine batch({"a batch of 1,000 diagnostic records, from timer to envelope / (serialise, scramble, serialise)",
                       "DiagnosticBatch", "EnvelopeOfTheSameRecords", 2.0});

}  // namespace
}  // namespace orbinel::bench
