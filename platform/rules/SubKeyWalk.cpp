#include "platform/rules/SubKeyWalk.h"

#include <algorithm>
#include <iterator>

namespace pdx {
namespace {

/// ERROR_INVALID_HANDLE and ERROR_NO_MORE_ITEMS.
constexpr int32_t stopErrors[] = {6, 259};

}  // namespace

void walkSubKeys(const std::function<SubKeyAnswer(uint32_t index)>& subKeyAt,
                 const std::function<bool(const std::wstring& name)>& function) {
    for (uint32_t index = 0; index < mostSubKeys; ++index) {
        const SubKeyAnswer answer = subKeyAt(index);
        if (std::ranges::find(stopErrors, answer.error) != std::end(stopErrors)) return;
        if (answer.error == 0 && !function(answer.name)) return;
    }
}

}  // namespace pdx
