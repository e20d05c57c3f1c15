// Owning types for what COM hands out: a reference on an interface, and a text.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string_view>

#include "platform/Handles.h"

namespace pdx {

template <typename Interface>
struct ComTraits {
    using Value = Interface*;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept { value->Release(); }
};

/// One reference on a COM object: made from a reference that the caller gives away, released at the end. Must not
/// outlive the apartment that the object lives in.
template <typename Interface>
class ComPtr : public UniqueHandle<ComTraits<Interface>> {
  public:
    using UniqueHandle<ComTraits<Interface>>::UniqueHandle;

    Interface* operator->() const noexcept { return this->get(); }
    /// The place for functions that give an interface by its id, such as CoCreateInstance and QueryInterface.
    [[nodiscard]] void** putVoid() noexcept { return reinterpret_cast<void**>(this->put()); }
};

struct BstrTraits {
    using Value = BSTR;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept { SysFreeString(value); }
};

/// A text as COM passes it. Null counts as empty, as everywhere in COM.
class Bstr : public UniqueHandle<BstrTraits> {
  public:
    // A pointer is never adopted: it could not be told from an ordinary text.
    Bstr() noexcept = default;
    /// A copy of the text; null if there is no memory for it.
    explicit Bstr(std::wstring_view text)
        : UniqueHandle<BstrTraits>(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}

    [[nodiscard]] std::wstring_view view() const noexcept {
        return get() ? std::wstring_view(get(), SysStringLen(get())) : std::wstring_view();
    }
};

}  // namespace pdx
