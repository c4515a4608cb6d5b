#include <filesystem>
#include <fstream>
#include <iostream>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"

namespace {

/// Kilobytes of memory that are the process's own.
long residentKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    }
    return 0;
}

void printSizes() {
    const auto stripped = std::filesystem::temp_directory_path() / "orbinel-bench-stripped.so";
    const auto command = "strip -o " + stripped.string() + " " + std::filesystem::canonical(ORBINEL_LIBRARY).string();
    if (std::system(command.c_str()) == 0) {
        std::cout << "Stripped liborbinel: " << std::filesystem::file_size(stripped) / 1024 << " KB\n";
        std::filesystem::remove(stripped);
    }
    const auto before = residentKilobytes();
    const orbinel::bench::RunningLibrary library;
    std::cout << "Memory after initialisation, with the Linux host: " << residentKilobytes() - before << " KB\n\n";
}

}  // namespace

/// Further arguments are Google Benchmark's own, such as --benchmark_filter=Event.
int main(int count, char** words) {
    printSizes();
    return orbinel::bench::runBenchmarks(count, words);
}
