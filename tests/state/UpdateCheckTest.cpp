// The headers of the system's network come before those that bring windows.h.
#include <winsock2.h>

#include <iphlpapi.h>

#include "state/UpdateCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using testing::ElementsAre;

using Address = std::vector<uint8_t>;

/// What the system's list of a test's machine holds.
std::vector<Address> adapters;

unsigned long listAdapters(IP_ADAPTER_INFO* list, unsigned long* size) {
    const unsigned long needed = adapters.size() * sizeof *list;
    if (adapters.empty()) return ERROR_NO_DATA;
    const bool fits = needed <= std::exchange(*size, needed);
    if (!fits) return ERROR_BUFFER_OVERFLOW;
    for (size_t i = 0; i < adapters.size(); ++i) {
        list[i].Next = i + 1 < adapters.size() ? &list[i + 1] : nullptr;
        list[i].AddressLength = static_cast<UINT>(adapters[i].size());
        std::ranges::copy(adapters[i], list[i].Address);
    }
    return ERROR_SUCCESS;
}

TEST(UpdateBucket, IsThatOfTheFirstNetworkAdapterIfTheListFits) {
    const Address known = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
    const Address other = {0x02, 0x00, 0x5E, 0x00, 0x00, 0x01};
    constexpr size_t most = 5184 / sizeof(IP_ADAPTER_INFO);
    const std::tuple<const char*, std::vector<Address>, bool> rows[] = {
        {"none", {}, false},
        {"two", {known, other}, true},
        {"the first without an address", {{}, known}, false},
        {"as many as fit", std::vector<Address>(most, known), true},
        {"one more", std::vector<Address>(most + 1, known), false},
    };
    for (const auto& [name, list, isKnown] : rows) {
        adapters = list;
        const CapturedLog log;
        EXPECT_EQ(getLocalMacAddress(listAdapters), isKnown ? "00-11-22-33-44-55" : "") << name;
        EXPECT_EQ(GetUpdateBucket(listAdapters), isKnown ? 83u : 62u) << name;
        EXPECT_THAT(log.takeTexts(), ElementsAre(isKnown ? "2 GetUpdateBucket Using bucket value: 83"
                                                         : "2 GetUpdateBucket Using bucket value: 62"));
    }
}

}  // namespace
}  // namespace pdx
