#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>

#include "hosts/linux/curl_http.hpp"
#include "hosts/linux/system_scheduler.hpp"
#include "tests/port_contract/contract_support.hpp"

// Sanitizers put a function of their own in this place.
#if !defined(__SANITIZE_THREAD__) && !defined(__SANITIZE_ADDRESS__)

namespace {

std::atomic<bool> threadsAreRefused{false};

}  // namespace

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                              void* argument) noexcept {
    static const auto create = reinterpret_cast<decltype(&pthread_create)>(::dlsym(RTLD_NEXT, "pthread_create"));
    return threadsAreRefused ? EAGAIN : create(thread, attributes, run, argument);
}

namespace orbinel::hosts {

namespace {

using contract::Gathered;

// As in a container that has reached its limit: the application goes on, and so does the work once there is a thread.
TEST(RefusedThreads, WorkWaitsForTheNextThreadAndARequestForTheEnd) {
    Gathered<int> done;
    const auto add = [&] { done.add(1); };
    SystemScheduler scheduler;
    threadsAreRefused = true;
    scheduler.postGlobal(add);
    const auto timer = scheduler.postGlobalAfter(std::chrono::milliseconds(1), add);
    {
        CurlHttp http;
        const auto ticket = http.send({}, [&](const platform::HttpOutcome& outcome) {
            EXPECT_TRUE(std::get<platform::HttpFailure>(outcome).cancelled);
            add();
        });
    }
    EXPECT_EQ(done.size(), 1u);
    threadsAreRefused = false;
    scheduler.postGlobal(add);
    const auto another = scheduler.postGlobalAfter(std::chrono::milliseconds(1), add);
    EXPECT_TRUE(done.await(5));
}

}  // namespace

}  // namespace orbinel::hosts

#endif
