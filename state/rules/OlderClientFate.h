// What an install does with the maker's older client.
#pragma once

namespace pdx {

enum class OlderClientFate {
    stays,
    goes,  ///< without a question
    asks,  ///< the user decides
};

/// By the settings: whether the migration to the new client is on, and whether the user is asked for it.
constexpr OlderClientFate olderClientFate(bool migration, bool prompt) {
    if (!migration) return OlderClientFate::stays;
    return prompt ? OlderClientFate::asks : OlderClientFate::goes;
}

}  // namespace pdx
