#include "state/UpdateCheck.h"

#include <winsock2.h>

#include <iphlpapi.h>

#include <algorithm>
#include <array>

#include "config/Settings.h"
#include "platform/HttpClient.h"
#include "platform/Log.h"
#include "platform/rules/Version.h"
#include "platform/SystemFunction.h"
#include "platform/Text.h"
#include "state/rules/UpdateRules.h"

namespace pdx {
namespace {

/// The version that the service recommends, as "a.b.c.d"; empty on failure. One request, which blocks the thread up to
/// the system's time-out; never throws. Logs "Error %d has occurred.\n" without a reply; one above mostReplyBytes
/// counts as none.
std::string GetRecommendedVersion(const std::string& url) try {
    HttpClient client(parseUrl(url));
    const bool sent = client.get() == 0;
    const std::vector<uint8_t> reply = sent ? client.readResponse() : std::vector<uint8_t>();
    if (reply.empty()) {
        PDX_LOG(logInfo, "GetRecommendedVersion", "Error %d has occurred.\n", GetLastError());
        return {};
    }
    return recommendedVersionOf({reinterpret_cast<const char*>(reply.data()), reply.size()});
} catch (...) {
    return {};
}

}  // namespace

unsigned long askAdapters(_IP_ADAPTER_INFO* list, unsigned long* size) {
    // Looked up: a late import of a missing library would raise a structured exception.
    const auto ask = lookUp<decltype(&GetAdaptersInfo)>(systemLibrary(L"iphlpapi.dll"), "GetAdaptersInfo");
    return ask ? ask(list, size) : ERROR_NO_DATA;
}

std::string getLocalMacAddress(AdapterQuery ask) {
    // A fixed size and no second try, so that a machine's bucket is the same in every version of this code.
    constexpr size_t listSize = 5184;
    alignas(IP_ADAPTER_INFO) std::array<BYTE, listSize> list{};
    auto* first = reinterpret_cast<IP_ADAPTER_INFO*>(list.data());
    ULONG size = listSize;
    if (ask(first, &size) != ERROR_SUCCESS) return {};
    return addressText({first->Address, std::min<size_t>(first->AddressLength, sizeof first->Address)});
}

uint32_t GetUpdateBucket(AdapterQuery ask) {
    const uint32_t bucket = updateBucketOf(getLocalMacAddress(ask));
    PDX_LOG(logInfo, "GetUpdateBucket", "Using bucket value: %u", bucket);
    return bucket;
}

std::optional<std::wstring> findNewerInstaller(const std::string& currentVersion) {
    // With an empty or malformed address no request is sent.
    const std::string url = getConfigString("updater.url") + updatePathOf(GetUpdateBucket());
    const std::string recommended = GetRecommendedVersion(url);
    if (!isNewerVersion(recommended, currentVersion)) return std::nullopt;
    const std::string addressTemplate = getConfigString("installer.downloadurl");
    const auto address = fillVersion(addressTemplate, recommended);
    if (!address) {
        PDX_LOG(logError, "findNewerInstaller", "No address for version %s: installer.downloadurl is \"%s\"",
                recommended, addressTemplate);
        return std::nullopt;
    }
    return toWide(*address);
}

}  // namespace pdx
