// Owning pointer of a COM object.
#pragma once

#include <unknwn.h>

#include <utility>

namespace pdx {

/// Holds one reference and gives it back when it goes.
template <typename Interface>
class ComPtr {
  public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}
    /// Takes a reference of its own on a borrowed pointer, which may be null.
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
    /// The place for a function that hands out a reference; what was held goes first.
    [[nodiscard]] Interface** put() noexcept {
        *this = nullptr;
        return &object;
    }
    [[nodiscard]] void** putVoid() noexcept { return reinterpret_cast<void**>(put()); }

  private:
    Interface* object = nullptr;
};

}  // namespace pdx
