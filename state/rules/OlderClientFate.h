// What an install makes of the maker's older client.
#pragma once

namespace pdx {

enum class OlderClientFate {
    stays,
    goes,  ///< without a question
    asks,  ///< the user decides
};

/// What the settings have in store for an older client that is installed: whether the move to the new client is on, and
/// whether the user is asked for it.
constexpr OlderClientFate olderClientFate(bool migration, bool prompt) {
    if (!migration) return OlderClientFate::stays;
    return prompt ? OlderClientFate::asks : OlderClientFate::goes;
}

}  // namespace pdx
