// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_BYTE_VIEW_H
#define VELMARCON_BASE_BYTE_VIEW_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/byte_order.h"

/// Whether all `count` bytes at `offset` are among the first `size` bytes. Forms no sum that could wrap.
constexpr bool IsInRange(std::uint64_t offset, std::uint64_t count, std::uint64_t size) {
    return offset <= size && count <= size - offset;
}

/// The bytes of an untrusted file, with the one range check that every access goes through. Does not own
/// them. Offsets and sizes are 64 bits wide: a sum of values read from a file cannot wrap.
class ByteView {
  public:
    constexpr ByteView() = default;
    explicit constexpr ByteView(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    constexpr std::uint64_t size() const { return bytes_.size(); }

    /// Whether there are `count` bytes at `offset`.
    constexpr bool Holds(std::uint64_t offset, std::uint64_t count) const {
        return IsInRange(offset, count, size());
    }

    /// The `count` bytes at `offset`; empty if not all of them are there.
    constexpr std::span<const std::uint8_t> Bytes(std::uint64_t offset, std::uint64_t count) const {
        return Holds(offset, count)
                   ? bytes_.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(count))
                   : std::span<const std::uint8_t>();
    }

    /// The unsigned integer at `offset` in the given byte order; 0 if not all of its bytes are there.
    template <std::unsigned_integral T>
    constexpr T Get(std::uint64_t offset, ByteOrder order) const {
        return Holds(offset, sizeof(T)) ? byte_order::Get<T>(Bytes(offset, sizeof(T)), order) : T{0};
    }

  private:
    std::span<const std::uint8_t> bytes_;
};

#endif  // VELMARCON_BASE_BYTE_VIEW_H
