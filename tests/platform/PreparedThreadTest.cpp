#include "platform/PreparedThread.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

unsigned __stdcall noteThread(void* into) {
    *static_cast<DWORD*>(into) = GetCurrentThreadId();
    return 0;
}

TEST(PreparedThread, RunsItsRoutineWhereItWasPrepared) {
    for (const bool started : {true, false}) {
        DWORD preparedOn = 0, ranOn = 0;
        {
            PreparedThread thread;
            thread.prepare([&] { noteThread(&preparedOn); });
            EXPECT_EQ(thread.id(), 0u) << "there is no routine yet";
            EXPECT_TRUE(!started || thread.start(noteThread, &ranOn));
        }
        EXPECT_NE(preparedOn, 0u);
        EXPECT_EQ(ranOn, started ? preparedOn : 0u);
    }
}

}  // namespace
}  // namespace pdx
