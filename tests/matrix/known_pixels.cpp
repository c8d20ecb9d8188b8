// SPDX-License-Identifier: MIT
#include "tests/matrix/known_pixels.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "samples/sensor_dump.h"
#include "tests/matrix/base_inputs.h"
#include "tests/matrix/bytes.h"
#include "tests/matrix/mapped_file.h"
#include "tests/support/camera_dng.h"

namespace matrix {

namespace {

using Pixels8 = std::span<const std::uint8_t>;

/// Whether all pixels differ by at most 1.
bool AreNear(Pixels8 a, Pixels8 b) {
    constexpr std::size_t block = 8192;
    for (std::size_t begin = 0; begin < a.size(); begin += block) {
        const std::size_t end = std::min(begin + block, a.size());
        int far = 0;
        for (std::size_t i = begin; i + 1 < end; i += 2) {
            const int difference = (a[i] | a[i + 1] << 8) - (b[i] | b[i + 1] << 8);
            far += difference < -1 || difference > 1 ? 1 : 0;
        }
        if (far != 0) {
            return false;
        }
    }
    return true;
}

Bytes UndamagedInput(Kind kind, std::uint16_t iso) {
    samples::Shot shot;
    shot.iso = iso;
    return kind == Kind::kPair ? PairJpeg(ByteOrder::kLittleEndian, shot) : CameraDng(shot);
}

/// Whether the pixels are the rows of the RAW file, with black where it ends.
bool AreThoseOfRawFile(Pixels8 pixels) {
    Bytes dump = RawFile();
    dump.resize(samples::kDumpBytes);
    constexpr std::size_t row_bytes = 2UL * samples::kSensorWidth;
    bool equal = pixels.size() == row_bytes * samples::kSensorHeight;
    for (int y = 0; equal && y < samples::kSensorHeight; ++y) {
        equal = std::ranges::equal(pixels.subspan(static_cast<std::size_t>(y) * row_bytes, row_bytes),
                                   std::span(dump).subspan(2 * samples::WordIndex(0, y), row_bytes));
    }
    return equal;
}

bool AreThoseOfCameraDng(Pixels8 pixels) {
    return std::ranges::equal(pixels, samples::DumpBytes(support::CameraLevels(kDngWidth, kDngHeight)));
}

}  // namespace

std::string KnownPixels::Make(const std::string& folder, const Child& child, CaseFolder& cases) {
    constexpr std::array<std::uint16_t, 5> speeds = {160, 320, 640, 1250, 2500};
    std::set<std::pair<Kind, Correction>> made;
    std::string fault;
    for (const Kind kind : {Kind::kPair, Kind::kDng}) {
        for (const OptionSet& options : OptionSets(kind)) {
            if (!made.emplace(kind, options.correction).second) {
                continue;
            }
            const bool of_speed =
                options.correction != Correction::kNone && options.correction != Correction::kDarkFrame;
            for (const std::uint16_t iso : std::span(speeds).first(of_speed ? speeds.size() : 1)) {
                fault += MakeOne(folder, child, cases, options, iso);
            }
        }
    }
    return fault.empty() ? FaultOfUncorrected() : fault;
}

std::string KnownPixels::MakeOne(const std::string& folder, const Child& child, CaseFolder& cases,
                                 const OptionSet& options, std::uint16_t iso) {
    std::string fault =
        cases.Prepare(options, {UndamagedInput(options.kind, iso), LensDatabase(), SensorDatabase()});
    const Ending ending = child.Run(CaseFolder::Arguments(options));
    const std::string path = folder + "/known-" + std::to_string(known_.size());
    std::error_code error;
    std::filesystem::rename(cases.Result(), path, error);
    Known known = {options.kind, options.correction, std::make_unique<MappedFile>(path), {}};
    fault += error ? ending.output + ending.errors + "no DNG from an undamaged input"
                   : support::FaultOfDng(known.file->bytes(), known.strip);
    known_.push_back(std::move(known));
    return fault;
}

/// Checks the two uncorrected images, on which all other checks rely.
std::string KnownPixels::FaultOfUncorrected() const {
    for (const Known& known : known_) {
        if (known.correction == Correction::kNone) {
            const auto pixels = known.Pixels();
            if (!(known.kind == Kind::kPair ? AreThoseOfRawFile(pixels) : AreThoseOfCameraDng(pixels))) {
                return "the pixels of an undamaged input changed";
            }
        }
    }
    return "";
}

bool KnownPixels::Include(Kind kind, Correction correction, Pixels8 pixels) const {
    return std::ranges::any_of(known_, [&](const Known& known) {
        if (known.kind != kind || known.strip.size != pixels.size() ||
            (known.correction != correction && known.correction != Correction::kNone)) {
            return false;
        }
        return IsDithered(known.correction)
                   ? AreNear(known.Pixels(), pixels)
                   : std::memcmp(known.Pixels().data(), pixels.data(), pixels.size()) == 0;
    });
}

}  // namespace matrix
