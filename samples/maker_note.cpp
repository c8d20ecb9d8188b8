// SPDX-License-Identifier: MIT
#include "samples/maker_note.h"

#include <bit>

namespace samples {

namespace {

Rational AsUnsigned(SRational value) {
    return {std::bit_cast<std::uint32_t>(value.numerator), std::bit_cast<std::uint32_t>(value.denominator)};
}

std::uint32_t LensValue(const Shot& shot) {
    constexpr std::uint32_t kCodeMask = 0x3F;
    constexpr std::uint32_t kSelectorMask = 3;
    return (shot.lens_code & kCodeMask) << 2U | (shot.frame_selector & kSelectorMask);
}

}  // namespace

std::vector<Entry> DngMakerNoteEntries(const Shot& shot) {
    return {
        Long(note::kUserProfile, shot.user_profile),
        Long(note::kSerialNumber, shot.serial_number),
        Short(note::kWhiteBalance, shot.white_balance_setting),
        Long(note::kLens, LensValue(shot)),
        SRationals(note::kExternalLight, {shot.external_light}),
        SRationals(note::kMeasuredLight, {shot.measured_light}),
        Rationals(note::kApproximateFNumber, {shot.approximate_f_number}),
        SLongs(note::kTemperature, {shot.temperature}),
        Long(note::kColourTemperature, shot.colour_temperature),
        Long(note::kUvIrCorrection, shot.uv_ir_correction),
        Long(note::kCcdVersion, shot.ccd_version),
        Long(note::kCcdBoardVersion, shot.ccd_board_version),
        Long(note::kControllerVersion, shot.controller_version),
        Long(note::kM16cVersion, shot.m16c_version),
        Long(note::kImageNumber, shot.image_number),
    };
}

std::vector<Entry> JpegMakerNoteEntries(const Shot& shot) {
    std::vector<Entry> entries = DngMakerNoteEntries(shot);
    Set(entries, Short(note::kQuality, shot.quality));
    Set(entries, Rationals(note::kExternalLight, {AsUnsigned(shot.external_light)}));
    Set(entries, Rationals(note::kMeasuredLight, {AsUnsigned(shot.measured_light)}));
    Set(entries, Rationals(note::kLevelRed, {shot.level_red}));
    Set(entries, Rationals(note::kLevelGreen, {shot.level_green}));
    Set(entries, Rationals(note::kLevelBlue, {shot.level_blue}));
    return entries;
}

std::vector<std::uint8_t> MakerNote(const std::vector<Entry>& entries) {
    std::vector<std::uint8_t> bytes = {'L', 'E', 'I', 'C', 'A', 0, 0, 0};
    std::vector<std::uint8_t> values;
    AppendIfd(entries, ByteOrder::kLittle, TableSize(entries), 0, bytes, values);
    bytes.insert(bytes.end(), values.begin(), values.end());
    bytes.insert(bytes.end(), {0, 0});
    return bytes;
}

std::vector<std::uint8_t> JpegMakerNote(const Shot& shot) {
    return MakerNote(JpegMakerNoteEntries(shot));
}

std::vector<std::uint8_t> DngMakerNote(const Shot& shot) {
    return MakerNote(DngMakerNoteEntries(shot));
}

}  // namespace samples
