#pragma once

#include <sys/types.h>

#include <string>
#include <thread>
#include <vector>

#include "base/mutex.hpp"

namespace orbinel::test {

/// Collects what a process writes to one pipe.
class PipeText {
public:
    PipeText();
    ~PipeText();

    /// The end for the child; closed in this process by `begin`.
    [[nodiscard]] int writeEnd() const { return ends_[1]; }
    void begin();
    /// The text up to the first line end, waiting for it; all there is when the pipe ends first.
    std::string firstLine();
    /// The whole text, waiting for the end of the pipe.
    std::string all();

private:
    void readAll();

    int ends_[2] = {-1, -1};
    std::thread reader_;
    Mutex mutex_;
    ConditionVariable changed_;
    std::string text_ ORBINEL_GUARDED_BY(mutex_);
    bool ended_ ORBINEL_GUARDED_BY(mutex_) = false;
};

/// The command-line tool as a process of its own, its output collected.
class ToolProcess {
public:
    /// `input` must fit a pipe's buffer.
    explicit ToolProcess(const std::vector<std::string>& arguments, const std::string& input = {});
    ~ToolProcess();

    std::string firstLine() { return out_.firstLine(); }
    void signal(int number);
    /// Waits for the end. The exit status, or minus the signal that ended it.
    int wait();
    std::string out() { return out_.all(); }
    std::string err() { return err_.all(); }

private:
    pid_t pid_ = -1;
    int status_ = 0;
    PipeText out_;
    PipeText err_;
};

/// Scrambling as the two ends agreed on it, written once more so that the tool is not measured by itself.
std::string scrambled(const std::string& text, const std::string& timestamp);

}  // namespace orbinel::test
