#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "core/world.hpp"
#include "orbinel/linux/linux_host.hpp"
#include "orbinel/orbinel.hpp"
#include "orbinel/platform/services.hpp"

namespace orbinel::bench {

/// A folder that goes with its object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }

private:
    std::filesystem::path path_;
};

/// The library over the Linux host, started and initialised against an endpoint.
class RunningLibrary {
public:
    explicit RunningLibrary(const std::string& endpoint = "http://127.0.0.1:1");
    ~RunningLibrary();

    [[nodiscard]] World& world();
    void post(std::string_view notification);
    /// Runs the main queue until the predicate holds.
    void runUntil(const std::function<bool()>& predicate);

    TemporaryFolder folder;
    hosts::LinuxHost host;
};

/// A server on the loopback interface that answers every POST with an empty dictionary.
class AnsweringServer {
public:
    AnsweringServer();
    ~AnsweringServer();
    [[nodiscard]] const std::string& origin() const noexcept { return origin_; }

private:
    struct Machinery;
    std::unique_ptr<Machinery> machinery_;
    std::string origin_;
};

/// Builds an event with a text, a whole number and a double, of a name that is never throttled.
void tagTypicalEvent(int number);

/// Lets so many campaigns arrive, none of which waits for the typical event.
void campaignsOfOtherEventsArrive(World& world, int campaigns);

/// The payload of a session stop with that many typical events.
[[nodiscard]] Dictionary typicalStop(int events);

}  // namespace orbinel::bench
