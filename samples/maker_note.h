// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_MAKER_NOTE_H
#define VELMARCON_SAMPLES_MAKER_NOTE_H

#include <cstdint>
#include <vector>

#include "samples/shot.h"
#include "samples/tiff_entry.h"

namespace samples {

constexpr std::uint32_t kMakerNoteHeaderSize = 8;  ///< "LEICA" and three NULs

/// Where the values of a note are and where their offsets count from.
struct NoteLayout {
    std::uint32_t base = kMakerNoteHeaderSize;  ///< byte of the note from which offsets count
    bool gap = true;  ///< two NULs between table and values, as the camera has them; without a gap they
                      ///< follow the values
};
constexpr NoteLayout kJpegNoteLayout = {.base = kMakerNoteHeaderSize};
constexpr NoteLayout kDngNoteLayout = {.base = 0};

/// Tags of the camera's maker note.
namespace note {
constexpr std::uint16_t kQuality = 0x0300;
constexpr std::uint16_t kUserProfile = 0x0302;
constexpr std::uint16_t kSerialNumber = 0x0303;
constexpr std::uint16_t kWhiteBalance = 0x0304;
constexpr std::uint16_t kLens = 0x0310;
constexpr std::uint16_t kExternalLight = 0x0311;
constexpr std::uint16_t kMeasuredLight = 0x0312;
constexpr std::uint16_t kApproximateFNumber = 0x0313;
constexpr std::uint16_t kTemperature = 0x0320;
constexpr std::uint16_t kColourTemperature = 0x0321;
constexpr std::uint16_t kLevelRed = 0x0322;
constexpr std::uint16_t kLevelGreen = 0x0323;
constexpr std::uint16_t kLevelBlue = 0x0324;
constexpr std::uint16_t kUvIrCorrection = 0x0325;
constexpr std::uint16_t kCcdVersion = 0x0330;
constexpr std::uint16_t kCcdBoardVersion = 0x0331;
constexpr std::uint16_t kControllerVersion = 0x0332;
constexpr std::uint16_t kM16cVersion = 0x0333;
constexpr std::uint16_t kImageNumber = 0x0340;
}  // namespace note

/// The 19 entries of a JPEG's maker note. 0x0311 and 0x0312 have the type RATIONAL, though their values are
/// signed.
std::vector<Entry> JpegMakerNoteEntries(const Shot& shot);
/// The 15 entries of a DNG's maker note: no quality and no white-balance levels; 0x0311 and 0x0312 have the
/// type SRATIONAL.
std::vector<Entry> DngMakerNoteEntries(const Shot& shot);

/// A maker note with `entries` in their order: header, IFD, values, two NULs. Always little-endian.
std::vector<std::uint8_t> MakerNote(const std::vector<Entry>& entries, NoteLayout layout = kJpegNoteLayout);

/// A JPEG's maker note, 292 bytes.
std::vector<std::uint8_t> JpegMakerNote(const Shot& shot, NoteLayout layout = kJpegNoteLayout);
/// A DNG's maker note, 220 bytes.
std::vector<std::uint8_t> DngMakerNote(const Shot& shot, NoteLayout layout = kDngNoteLayout);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_MAKER_NOTE_H
