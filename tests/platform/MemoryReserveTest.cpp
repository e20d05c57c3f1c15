#include "platform/MemoryReserve.h"

#include <gtest/gtest.h>

#include <new>

namespace pdx {
namespace {

TEST(MemoryReserve, IsFreedAtTheFirstShortageAndKeptAgainByTheNextObject) {
    for (int object = 0; object < 2; ++object) {
        keepMemoryReserve();
        const std::new_handler handler = std::get_new_handler();
        ASSERT_TRUE(handler);
        EXPECT_NO_THROW(handler());
        EXPECT_THROW(handler(), std::bad_alloc);
    }
    releaseMemoryReserve();
    EXPECT_FALSE(std::get_new_handler());
}

}  // namespace
}  // namespace pdx
