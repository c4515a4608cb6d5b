#include <gtk/gtk.h>

#include "apps/orbinel/play/gtk/window_interface.hpp"
#include "apps/orbinel/play/play_interface.hpp"
#include "orbinel/export.hpp"

extern "C" ORBINEL_API orbinel::tool::PlayInterface* orbinelMakePlayInterface(const orbinel::tool::PlayWait& wait) {
    if (gtk_init_check() == FALSE) return nullptr;
    return new orbinel::tool::WindowInterface(wait);
}
