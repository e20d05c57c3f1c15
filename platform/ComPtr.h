// Owning types for results of COM: a reference to an object, and texts.
#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>
#include <unknwn.h>

#include <new>
#include <string_view>
#include <utility>

#include "platform/Handles.h"

namespace pdx {

/// Holds one reference and releases it in its destructor.
template <typename Interface>
class ComPtr {
  public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}
    /// Adds a reference to a borrowed pointer, which may be null.
    static ComPtr share(Interface* borrowed) {
        ComPtr pointer;
        pointer.object = borrowed;
        if (borrowed) borrowed->AddRef();
        return pointer;
    }
    ComPtr(const ComPtr& other) noexcept : object(other.object) {
        if (object) object->AddRef();
    }
    ComPtr(ComPtr&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(object, other.object);
        return *this;
    }
    ~ComPtr() {
        if (object) object->Release();
    }

    [[nodiscard]] Interface* get() const noexcept { return object; }
    Interface* operator->() const noexcept { return object; }
    explicit operator bool() const noexcept { return object != nullptr; }
    /// The output parameter of a function that returns a reference; releases the earlier one first.
    [[nodiscard]] Interface** put() noexcept {
        *this = nullptr;
        return &object;
    }
    [[nodiscard]] void** putVoid() noexcept { return reinterpret_cast<void**>(put()); }

  private:
    Interface* object = nullptr;
};

/// A text of COM. Null means empty, as everywhere in COM.
class Bstr : public Owned<BSTR, SysFreeString> {
  public:
    // No constructor adopts a pointer: its type is that of an ordinary text.
    Bstr() noexcept = default;
    /// A copy of the text. Throws std::bad_alloc: not every component takes null for an argument.
    explicit Bstr(std::wstring_view text)
        : Owned<BSTR, SysFreeString>(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
        if (!get()) throw std::bad_alloc();
    }

    [[nodiscard]] std::wstring_view view() const noexcept {
        return get() ? std::wstring_view(get(), SysStringLen(get())) : std::wstring_view();
    }
};

/// A text that the shell returns.
using TaskText = Owned<wchar_t*, CoTaskMemFree>;

}  // namespace pdx
