// The entry for libFuzzer, which looks for inputs by coverage; the target is named in FUZZ_TARGET.
#include <cstdlib>

#include "fuzz/Target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    static const pdx::fuzz::Target* target = [] {
        const char* name = std::getenv("FUZZ_TARGET");
        for (const auto& row : pdx::fuzz::targets())
            if (name != nullptr && std::string_view(name) == row.name) return &row;
        pdx::fuzz::require(false, "FUZZ_TARGET names a target");
        std::abort();
    }();
    target->run({reinterpret_cast<const char*>(bytes), size});
    return 0;
}
