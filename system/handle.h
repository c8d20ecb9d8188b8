// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_HANDLE_H
#define VELMARCON_SYSTEM_HANDLE_H

/// An open file, folder or process of the operating system, which is closed with its owner; or none.
class Handle {
  public:
#if defined(_WIN32)
    using Native = void*;  ///< a HANDLE
#else
    using Native = int;  ///< a file descriptor
#endif

    Handle() = default;

    /// Takes over what a call of the system returned, be it a failure.
    explicit Handle(Native native);

    ~Handle() {
        Close();
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&& other) noexcept : native_(other.Release()) {}
    Handle& operator=(Handle&& other) noexcept;

    bool IsOpen() const {
        return native_ != kNone;
    }

    /// For calls of the system.
    Native Get() const {
        return native_;
    }

    /// Leaves it to the caller to close it.
    Native Release();

  private:
#if defined(_WIN32)
    static constexpr Native kNone = nullptr;
#else
    static constexpr Native kNone = -1;
#endif

    void Close();

    Native native_ = kNone;
};

#endif  // VELMARCON_SYSTEM_HANDLE_H
