// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_LENSDB_H
#define VELMARCON_EXIF_LENSDB_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// The lens database, `lensdb.ini`: lens records by their 6-bit lens code. The file holds one section per
/// lens, named by the code as six "0"/"1" characters, with the keys Maker, Model, SerialNo and FocalLength
/// and any number of Aperture lines. Names are compared without case; other keys are ignored.
class lensdb {
  public:
    /// One lens.
    struct Lensdbtype {
        std::string Maker;
        std::string Model;
        std::string SerialNo;
        double FocalLength = 0;              ///< millimetres
        std::vector<std::int32_t> Aperture;  ///< f-numbers in 1/65536, ascending
    };

    static constexpr double kApertureUnits = 65536;  ///< units of Aperture per f-number

    /// An empty database without a file.
    lensdb() = default;

    /// An empty database for the file `folder` + "lensdb.ini"; `folder` ends in a separator or is empty.
    explicit lensdb(const std::string& folder);

    /// Reads the file. Returns 0, or the INI library's negative error code if it cannot be read; the lenses
    /// then stay unchanged. A bad number counts as its numeric prefix, or 0; a number out of range counts as
    /// the nearest that fits.
    [[nodiscard]] int LoadLensData();

    std::string DatabaseFile;                  ///< path of lensdb.ini
    std::map<std::string, Lensdbtype> Lenses;  ///< by lens code, in the form of EXIFInfo::LensCodeBits
};

#endif  // VELMARCON_EXIF_LENSDB_H
