// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_WRITTEN_DNG_H
#define VELMARCON_BATCH_PROOF_WRITTEN_DNG_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "batch/proof/expected_tags.h"
#include "batch/proof/file_rows.h"
#include "system/sequential_file.h"

/// Takes the bytes of a file in their order.
using ByteObserver = std::function<void(std::span<const std::uint8_t>)>;

/// A DNG file that is compared with what it must be, and read from its first byte to its last meanwhile.
class WrittenDng {
  public:
    static constexpr const char* kUnreadable = "it cannot be read";

    /// The observer gets all bytes of the file; it may be empty.
    explicit WrittenDng(const ByteObserver& observer) : observer_(observer) {}

    /// Reads the file at `path` up to its raw image, and compares its tags with `expected`: type, count and
    /// every byte of the value; there must be no others. The images must stand where the layout puts them,
    /// and the file must end with the raw image. Returns what differs, such as "tag Make differs", or an
    /// empty text.
    std::string CompareTags(const std::string& path, const ExpectedTags& expected);

    /// After CompareTags found a difference: whether the file is longer or shorter than the DNG that was
    /// expected.
    bool HasOtherLength(const ExpectedTags& expected) const;

    /// Instead of CompareTags: finds the raw image of `width` times `height` 16-bit pixels in the file at
    /// `path`, wherever it stands. Returns why it cannot be compared, or an empty text.
    std::string FindImage(const std::string& path, int width, int height);

    /// The bytes of the preview; none without one.
    const std::vector<std::uint8_t>& preview() const { return preview_; }

    /// The rows of the raw image, of `width` pixels. Called once, when the tags were as they must be, or the
    /// image was found.
    FileRows Rows(std::size_t width);

    /// Called with each row after it was compared, when its bytes are in the processor's cache.
    void Observe(std::span<const std::uint16_t> row) const;

    /// Whether what was looked at so far could be read.
    bool IsIntact() const { return file_.IsIntact(); }

  private:
    bool Read(std::uint64_t size, std::vector<std::uint8_t>& bytes);
    std::string CompareDirectories(const ExpectedTags& expected);
    std::string ComparePlaces(const ExpectedTags& expected);

    const ByteObserver& observer_;
    SequentialFile file_;
    std::vector<std::uint8_t> head_;  ///< all bytes before the images
    std::vector<std::uint8_t> preview_;
    std::uint64_t skipped_ = 0;  ///< bytes before the image that was found
};

#endif  // VELMARCON_BATCH_PROOF_WRITTEN_DNG_H
