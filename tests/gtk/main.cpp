#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <cstdio>

int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    if (!gtk_init_check()) {
        std::fputs("Skipped: there is no display.\n", stderr);
        return 77;
    }
    return RUN_ALL_TESTS();
}
