// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_DNG_PROOF_H
#define VELMARCON_BATCH_PROOF_DNG_PROOF_H

#include <cstdint>
#include <string>
#include <vector>

#include "app/run_settings.h"
#include "batch/proof/camera_dng.h"
#include "batch/proof/sensor_corrections.h"
#include "batch/proof/written_dng.h"
#include "exif/lensdb.h"
#include "input/read_input_data.h"
#include "sensor/sensdb.h"

/// Compares written DNGs with the files that they were made of, which are read anew for it. Prints nothing.
/// Keeps its buffers from picture to picture.
///
/// Every pixel and every tag must be as the conversion or the repair makes them. The removal of the dark
/// field adds a random part: there each pixel must be one of the two that it can become.
class DngProof {
  public:
    /// `settings` are those of the conversion; their input and output are not looked at. Everything is owned
    /// by the caller, and outlives the object. The sensor database is read anew when its file has changed.
    DngProof(const RunSettings& settings, lensdb& lenses, sensdb& sensors)
        : settings_(settings), lenses_(lenses), sensors_(sensors) {}

    /// Whether the file `dng` is what the settings make of `base`.RAW, `base`.JPG and, if it counts,
    /// `base`.BIA in `folder`; or, with `camera_dng`, of `base`.DNG there, which must be another file.
    /// `folder` ends in its separator or is empty. `observer`, if there is one, gets all bytes of the file,
    /// or those up to a difference. Returns an empty text if it is; otherwise words that follow the picture's
    /// name: "does not match its RAW file: pixel 17 of row 3 is 512 instead of 513", rows and pixels counted
    /// from 0; or "cannot be compared with ...".
    std::string Check(const std::string& folder, const std::string& base, bool camera_dng,
                      const std::string& dng, const ByteObserver& observer = nullptr);

    /// After Check: whether tags differ in a DNG that is longer or shorter than it must be, as another
    /// program leaves it that has changed the metadata.
    bool WasRewritten() const { return was_rewritten_; }

    /// As Check, but of the raw image alone, wherever it stands in the DNG.
    std::string CheckPixels(const std::string& folder, const std::string& base, bool camera_dng,
                            const std::string& dng);

  private:
    std::string CheckAll(const std::string& folder, const std::string& base, bool camera_dng,
                         const std::string& dng, const ByteObserver& observer);
    std::string CompareTags(const std::string& path, const ExpectedTags& tags, int width, int height,
                            WrittenDng& dng);
    std::string CheckPair(const std::string& folder, const std::string& base, const std::string& path,
                          WrittenDng& dng);
    static std::string ComparePair(const ReadInputData& record, WrittenDng& dng);
    std::string CompareCorrectedPair(ReadInputData& record, WrittenDng& dng);
    std::string CorrectedDifference(ReadInputData& record, WrittenDng& dng) const;
    std::string CheckRepair(const std::string& source, const std::string& path, WrittenDng& dng);
    std::string RepairDifference(const CameraDng& camera, const std::string& path, WrittenDng& dng);
    std::string CorrectedDifference(const CameraDng& camera, SensorCorrections& corrections, bool dark_field,
                                    WrittenDng& dng);

    const RunSettings& settings_;
    lensdb& lenses_;
    sensdb& sensors_;
    bool pixels_only_ = false;
    bool was_rewritten_ = false;
    std::vector<std::uint16_t> frame_;  ///< memory for an image that is corrected
    std::vector<std::uint8_t> source_;  ///< memory for a camera's DNG
};

#endif  // VELMARCON_BATCH_PROOF_DNG_PROOF_H
