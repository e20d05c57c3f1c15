// One owning type for each kind of handle, made from one template and its closing function.
#pragma once

#include <windows.h>

#include <utility>

namespace pdx {

/// Owns a value of the traits' type and closes it by the traits in its destructor. Movable, not copyable.
template <typename Traits>
class UniqueHandle {
  public:
    using Value = typename Traits::Value;

    UniqueHandle() noexcept = default;
    explicit UniqueHandle(Value owned) noexcept : value(owned) {}
    UniqueHandle(UniqueHandle&& other) noexcept : value(other.release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { reset(); }

    [[nodiscard]] Value get() const noexcept { return value; }
    explicit operator bool() const noexcept { return value != Traits::invalid(); }
    [[nodiscard]] Value release() noexcept { return std::exchange(value, Traits::invalid()); }
    void reset(Value owned = Traits::invalid()) noexcept {
        if (value != Traits::invalid()) Traits::close(value);
        value = owned;
    }
    /// The output parameter of a function that returns a new handle; closes the earlier one first.
    [[nodiscard]] Value* put() noexcept {
        reset();
        return &value;
    }

  private:
    Value value = Traits::invalid();
};

/// The traits of a value whose null means none, by its closing function.
template <typename Type, auto closeValue>
struct NullTraits {
    using Value = Type;
    static Value invalid() noexcept { return Value{}; }
    static void close(Value value) noexcept { closeValue(value); }
};
template <typename Type, auto closeValue>
using Owned = UniqueHandle<NullTraits<Type, closeValue>>;

/// Events, threads, processes, tokens, mutexes; null means none.
using Handle = Owned<HANDLE, CloseHandle>;

template <auto closeValue>
struct FileTraits {
    using Value = HANDLE;
    static Value invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(Value value) noexcept { closeValue(value); }
};
/// Files and snapshots; INVALID_HANDLE_VALUE means none.
using FileHandle = UniqueHandle<FileTraits<CloseHandle>>;

/// A search for files.
using FindHandle = UniqueHandle<FileTraits<FindClose>>;

/// Memory of the system's local heap, by a typed pointer.
template <typename Type>
using LocalMemoryTraits = NullTraits<Type*, LocalFree>;

}  // namespace pdx
