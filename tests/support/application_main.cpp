// Runs the tests as a compiled program runs: on a thread of its own beside the application's loop.
// The registry is made in tracker mode, so that the tests' windows may come and go.

#include <gtest/gtest.h>

#include <Application.h>
#include <AppDefs.h>

#include <plinth.h>

#include "support/program.h"

void** gRegistry = nullptr;
static int sResult = 1;

static void run_tests()
{
    gRegistry = Open_Sys(1);
    sResult = RUN_ALL_TESTS();
    be_app->PostMessage(B_QUIT_REQUESTED);
}

int main(int argc, char** argv)
{
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();  // names need no application, which others would notice
    const int status = PlinthStart(argc, argv, run_tests);
    return status != 0 ? status : sResult;
}
