// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_HANDLE_H
#define VELMARCON_SYSTEM_HANDLE_H

/// Owns an open file, folder or process of the operating system, and closes it when it is destroyed. May be
/// empty.
class Handle {
  public:
#if defined(_WIN32)
    using Native = void*;  ///< a HANDLE
#else
    using Native = int;  ///< a file descriptor
#endif

    Handle() = default;

    /// Takes ownership of what a system call returned; a failure makes an empty handle.
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

    /// The native handle, for system calls.
    Native Get() const {
        return native_;
    }

    /// Gives up ownership: the caller has to close it.
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
