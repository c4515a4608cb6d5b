#pragma once

namespace orbinel::hosts {

/// Finds out whether the system lets the web engine shut its processes in. Where it does not, the engine would end the
/// whole application at the first page.
///
/// Threads: main thread only. Begins to find out when it is made; asking waits for the rest, half a second at most.
class SandboxProbe {
public:
    SandboxProbe();
    ~SandboxProbe();
    SandboxProbe(const SandboxProbe&) = delete;
    SandboxProbe& operator=(const SandboxProbe&) = delete;

    [[nodiscard]] bool works();

private:
    enum class Verdict { open, works, fails };

    [[nodiscard]] bool saysYes() const;

    Verdict verdict_ = Verdict::open;
    int answer_ = -1;  // file descriptor
};

}  // namespace orbinel::hosts
