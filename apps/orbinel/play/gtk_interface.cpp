#include "apps/orbinel/play/gtk_interface.hpp"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "apps/orbinel/play/fields.hpp"

namespace orbinel::tool {

namespace {

constexpr const char* fileName = "orbinel_play_gtk.so";

/// Beside the tool, as built, or where it is installed.
std::filesystem::path libraryFile() {
    std::error_code error;
    const auto directory = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const auto& file : {directory / fileName, directory.parent_path() / "lib/orbinel" / fileName}) {
        if (std::filesystem::exists(file, error)) return file;
    }
    throw Unusable("--ui gtk needs " + std::string(fileName) + ", which is not installed");
}

}  // namespace

std::unique_ptr<PlayInterface> makeGtkInterface(const PlayWait& wait) {
    // Never closed: GTK cannot be unloaded.
    void* library = dlopen(libraryFile().c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw Unusable(std::string("--ui gtk cannot be loaded: ") + dlerror());
    const auto make = reinterpret_cast<MakePlayInterface>(dlsym(library, makePlayInterfaceName));
    if (make == nullptr) throw Unusable(std::string(fileName) + " is not of this tool");
    std::unique_ptr<PlayInterface> interface(make(wait));
    if (interface == nullptr) throw Unusable("--ui gtk needs a display");
    return interface;
}

}  // namespace orbinel::tool
