// SPDX-License-Identifier: MIT
#include "samples/maker_note.h"

namespace samples {

namespace {

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

std::vector<std::uint8_t> MakerNote(const std::vector<Entry>& entries, NoteLayout layout) {
    constexpr std::uint32_t kGapSize = 2;
    const std::uint32_t table_end = kMakerNoteHeaderSize + TableSize(entries);
    const std::uint32_t values_begin = table_end + (layout.gap ? kGapSize : 0);
    std::vector<std::uint8_t> bytes = {'L', 'E', 'I', 'C', 'A', 0, 0, 0};
    std::vector<std::uint8_t> values;
    AppendIfd(entries, ByteOrder::kLittleEndian, values_begin - layout.base, 0, bytes, values);
    bytes.resize(values_begin);
    bytes.insert(bytes.end(), values.begin(), values.end());
    bytes.resize(table_end + values.size() + kGapSize);
    return bytes;
}

std::vector<std::uint8_t> JpegMakerNote(const Shot& shot, NoteLayout layout) {
    return MakerNote(JpegMakerNoteEntries(shot), layout);
}

std::vector<std::uint8_t> DngMakerNote(const Shot& shot, NoteLayout layout) {
    return MakerNote(DngMakerNoteEntries(shot), layout);
}

}  // namespace samples
