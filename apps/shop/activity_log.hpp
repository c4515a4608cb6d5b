#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace shop {

/// One thing that the shop asked of the library, or that the library did or said.
struct Activity {
    enum class Kind { call, callback, identity, console };

    Kind kind = Kind::call;
    std::string text;
    std::string time;  // of day, such as "14:03:27"
};

/// What the drawer shows, as it happens. It keeps nothing itself.
///
/// Threads: `add` may be called from any; the follower is called on the main one, in order, never inside `add`.
class ActivityLog : public std::enable_shared_from_this<ActivityLog> {
public:
    void add(Activity::Kind kind, std::string_view text);

    /// Main thread. One at a time; an empty function for none.
    void setFollower(std::function<void(const Activity&)> follower) { follower_ = std::move(follower); }

private:
    void handOver();

    std::mutex mutex_;
    std::vector<Activity> waiting_;                  // guarded by mutex_
    std::function<void(const Activity&)> follower_;  // of the main thread
};

}  // namespace shop
