// Runs the tests under Wine, inside one process that has COM, a display and GDI+, as the engine's has.
#include <gtest/gtest.h>
#include <objbase.h>

#include "ui/toolkit/GdiPlus.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    pdx::startGraphics();
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
