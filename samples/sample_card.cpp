// SPDX-License-Identifier: MIT
#include "samples/sample_card.h"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <system_error>
#include <utility>
#include <vector>

#include "samples/camera_dng.h"
#include "samples/camera_jpeg.h"
#include "samples/file_writer.h"
#include "samples/sample_databases.h"
#include "samples/sensor_dump.h"

namespace samples {

namespace {

using FileBytes = std::vector<std::uint8_t>;

/// Every fourth pair has a lens without a code; the others take the lenses of Lenses() in turn.
const Lens* LensOf(int number) {
    constexpr int kTurn = 4;
    if (number % kTurn == 0) {
        return nullptr;
    }
    const auto coded_before = static_cast<std::size_t>(number - 1 - (number / kTurn));
    return &Lenses()[coded_before % Lenses().size()];
}

/// Cycles through no bias, a whole step below and two thirds above.
SRational BiasOf(int number) {
    constexpr std::array<std::int32_t, 3> kBiases = {0, -65536, 43691};
    return {kBiases.at(static_cast<std::size_t>(number - 1) % kBiases.size()), 65536};
}

std::string Padded(std::uint64_t value, std::size_t digits) {
    const std::string text = std::to_string(value);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

/// The date in the form of Exif 2.3, `number` times 37 s after the first exposure of the card.
std::string DateOf(int number) {
    using namespace std::chrono;
    const sys_seconds time = sys_days(2007y / August / 2) + 10h + 13min + seconds(37 * number);
    const sys_days day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss<seconds> clock(time - day);
    const auto two = [](auto value) { return Padded(static_cast<std::uint64_t>(value), 2); };
    return std::to_string(static_cast<int>(date.year())) + ":" + two(static_cast<unsigned>(date.month())) +
           ":" + two(static_cast<unsigned>(date.day())) + " " + two(clock.hours().count()) + ":" +
           two(clock.minutes().count()) + ":" + two(clock.seconds().count());
}

/// One file of the card; its bytes are computed when it is written.
struct CardFile {
    std::string name;
    std::function<FileBytes()> bytes;
};

/// The content of the card's files; frames and pictures that several files share are computed once.
class CardContent {
  public:
    explicit CardContent(const CardOptions& options)
        : noise_(options.noise), seed_(static_cast<std::uint64_t>(options.seed)), flat_(options.flat) {}

    FileBytes Dump(std::uint16_t iso) {
        return Remembered(dumps_, iso, [&] { return DumpBytes(Words(Light(), Sensor(iso, 1))); });
    }

    FileBytes DarkDump(std::uint16_t iso) {
        return Remembered(dark_dumps_, iso, [&] { return DumpBytes(DarkWords(Sensor(iso, 2))); });
    }

    FileBytes Jpeg(const Shot& shot) {
        ExifBlock exif = CameraExif(shot);
        SetThumbnail(exif, Thumbnail());
        return CameraJpeg(exif, Picture());
    }

    static FileBytes DarkJpeg(const Shot& shot) {
        ExifBlock exif = CameraExif(shot);
        SetThumbnail(exif, EncodeJpeg(Black(kThumbnailWidth, kThumbnailHeight)));
        return CameraJpeg(exif, EncodeJpeg(Black(kPictureWidth, kPictureHeight)));
    }

    FileBytes Dng(const Shot& shot) {
        return Serialize(CameraDng(shot, Preview(), CroppedBytes(Words(Light(), Sensor(shot.iso, 3)))));
    }

  private:
    static constexpr int kPictureWidth = 984;
    static constexpr int kPictureHeight = 658;
    static constexpr int kThumbnailWidth = 160;
    static constexpr int kThumbnailHeight = 107;

    static RgbImage Black(int width, int height) {
        return {
            .width = width,
            .height = height,
            .samples = FileBytes(3UL * static_cast<std::size_t>(width) * static_cast<std::size_t>(height))};
    }

    template <typename Make>
    static const FileBytes& Remembered(std::map<std::uint16_t, FileBytes>& known, std::uint16_t iso,
                                       Make make) {
        const auto [place, is_new] = known.try_emplace(iso);
        if (is_new) {
            place->second = make();
        }
        return place->second;
    }

    SensorOptions Sensor(std::uint16_t iso, std::uint64_t seed) const {
        SensorOptions sensor;
        sensor.iso = iso;
        sensor.noise = noise_;
        constexpr std::uint64_t kSeedsOfACard = 1000000;
        sensor.seed = ((seed_ - 1) * kSeedsOfACard) + (seed * 10000) + iso;
        return sensor;
    }

    /// What the camera sees.
    Scene View(int width, int height) const {
        return flat_ ? Scene::GreySky(width, height) : Scene(width, height);
    }

    FileBytes Preview() const { return PreviewOf(View(kDngPreviewWidth, kDngPreviewPictureHeight)); }

    const std::vector<float>& Light() {
        if (light_.empty()) {
            light_ = ExposeSensor(View(kSensorWidth, kSensorHeight));
        }
        return light_;
    }

    const FileBytes& Picture() {
        if (picture_.empty()) {
            picture_ = EncodeJpeg(SrgbImage(View(kPictureWidth, kPictureHeight)));
        }
        return picture_;
    }

    const FileBytes& Thumbnail() {
        if (thumbnail_.empty()) {
            thumbnail_ = EncodeJpeg(SrgbImage(View(kThumbnailWidth, kThumbnailHeight)));
        }
        return thumbnail_;
    }

    bool noise_;
    std::uint64_t seed_;
    bool flat_;
    std::vector<float> light_;
    FileBytes picture_;
    FileBytes thumbnail_;
    std::map<std::uint16_t, FileBytes> dumps_;
    std::map<std::uint16_t, FileBytes> dark_dumps_;
};

FileBytes TextBytes(const std::string& text) {
    return {text.begin(), text.end()};
}

void AddPair(std::vector<CardFile>& files, CardContent& content, const Shot& shot, int number,
             bool with_dark_frame) {
    const std::string base = BaseName(number);
    files.push_back({base + ".RAW", [&content, shot] { return content.Dump(shot.iso); }});
    files.push_back({base + ".JPG", [&content, shot] { return content.Jpeg(shot); }});
    if (with_dark_frame) {
        files.push_back({base + ".BIA", [&content, shot] { return content.DarkDump(shot.iso); }});
    }
}

void AddDarkPair(std::vector<CardFile>& files, CardContent& content, const Shot& shot, int number) {
    const std::string base = BaseName(number);
    files.push_back({base + ".RAW", [&content, shot] { return content.DarkDump(shot.iso); }});
    files.push_back({base + ".JPG", [shot] { return CardContent::DarkJpeg(shot); }});
}

/// The exposure for the sensor database: always ISO 160, the speed at which the database is kept.
Shot DarkShot(int number, const CardOptions& options) {
    Shot shot = CardShot(number, options);
    shot.iso = 160;
    return shot;
}

Shot DngShot(int number, const CardOptions& options) {
    Shot shot = CardShot(number, options);
    shot.software = "1.107";
    return shot;
}

std::vector<CardFile> FilesOf(const CardOptions& options, CardContent& content) {
    std::vector<CardFile> files;
    int number = 1;
    for (; number <= options.pairs; ++number) {
        AddPair(files, content, CardShot(number, options), number, options.dark);
    }
    if (options.dark) {
        AddDarkPair(files, content, DarkShot(number, options), number);
        ++number;
    }
    if (options.dng) {
        const Shot shot = DngShot(number, options);
        files.push_back({BaseName(number) + ".DNG", [&content, shot] { return content.Dng(shot); }});
    }
    if (options.databases) {
        files.push_back({"lensdb.ini", [] { return TextBytes(LensDatabase()); }});
        files.push_back(
            {"sensdb.ini", [] { return TextBytes(SensorDatabase(Shot().serial_number, SensorOptions())); }});
    }
    return files;
}

}  // namespace

std::string BaseName(int number) {
    return "L1" + Padded(static_cast<std::uint64_t>(number), 6);
}

Shot CardShot(int number, const CardOptions& options) {
    constexpr std::array<std::uint16_t, 5> kSpeeds = {160, 640, 2500, 320, 1250};
    constexpr std::uint32_t kFirstImageNumber = 1000;
    constexpr std::size_t kIdDigits = 32;
    Shot shot;
    shot.date_time = DateOf(number);
    shot.date_time_digitized = shot.date_time;
    shot.iso = options.iso.value_or(kSpeeds.at(static_cast<std::size_t>(number - 1) % kSpeeds.size()));
    const auto gain = static_cast<std::uint32_t>(IsoGain(shot.iso));
    shot.exposure_time.numerator /= gain;
    shot.shutter_speed.numerator += std::countr_zero(gain) * shot.shutter_speed.denominator;
    const auto image_number = kFirstImageNumber + static_cast<std::uint32_t>(number);
    shot.image_number = image_number;
    shot.image_unique_id = Padded(image_number, kIdDigits);

    shot.exposure_bias = BiasOf(number);
    Mount(LensOf(number), shot);
    return shot;
}

std::string WriteCard(const std::string& folder, const CardOptions& options) {
    CardContent content(options);
    const std::vector<CardFile> files = FilesOf(options, content);
    const auto path_of = [&](const CardFile& file) {
        return (std::filesystem::path(folder) / file.name).string();
    };
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    if (failure) {
        return "cannot make folder " + folder + ": " + failure.message();
    }
    for (const CardFile& file : files) {
        if (!options.force && std::filesystem::exists(path_of(file), failure)) {
            return path_of(file) + " exists already";
        }
    }
    for (const CardFile& file : files) {
        if (std::string problem = WriteFile(path_of(file), file.bytes(), options.force); !problem.empty()) {
            return problem;
        }
    }
    return "";
}

}  // namespace samples
