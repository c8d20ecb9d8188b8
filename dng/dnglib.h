// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_DNGLIB_H
#define VELMARCON_DNG_DNGLIB_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "dng/ifd.h"
#include "dng/tag_tree.h"
#include "exif/lensdb.h"
#include "tiff/rational.h"

class ReadInputData;
class sensdb;

/// The tag tree of one DNG file in memory (TIFF 6.0, DNG 1.4): built for a RAW+JPEG pair, or read from a DNG
/// that the camera wrote; laid out, and written.
class DNGlib {
  public:
    using IFDTag = ::IFDTag;
    using IFD = ::IFD;

    /// For converting a pair. The record must outlive the object, as must the databases; none is owned.
    DNGlib(ReadInputData* input, lensdb* lenses, sensdb* sensors);

    /// For repairing a DNG that the camera wrote: without a record.
    DNGlib(lensdb* lenses, sensdb* sensors);

    /// The three IFDs as they are; the SubIFD is empty unless IFD0 holds a preview.
    const IFD& ifd0() const { return tree_.ifd0; }
    const IFD& sub_ifd() const { return tree_.sub_ifd; }
    const IFD& exif_ifd() const { return tree_.exif_ifd; }

    // --- Tag model; the program itself uses the functions of dng/ifd.h. Each AddIFDTag stores a new entry
    // under `tag`, replacing one that is there, and returns 0.

    /// `byteCount` bytes at `data`, unchanged, as a value of `type`, which must be 1 to 10.
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint8_t* data, std::uint16_t type,
                  std::uint32_t byteCount);

    // Arrays of n values: BYTE, SBYTE, SHORT, SSHORT, LONG, SLONG, RATIONAL, SRATIONAL.
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint8_t* values, std::uint32_t n);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const char* values, std::uint32_t n);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint16_t* values, std::uint32_t n);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::int16_t* values, std::uint32_t n);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint32_t* values, std::uint32_t n);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::int32_t* values, std::uint32_t n);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint32_t* numerators,
                  const std::uint32_t* denominators, std::uint32_t n);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::int32_t* numerators,
                  const std::int32_t* denominators, std::uint32_t n);

    // Single values of the same types.
    int AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint32_t value);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, std::int32_t value);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint16_t value);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, std::int16_t value);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint8_t value);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, char value);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint32_t numerator, std::uint32_t denominator);
    int AddIFDTag(IFD* ifd, std::uint16_t tag, std::int32_t numerator, std::int32_t denominator);

    /// One byte of a given one-byte type.
    int AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint8_t value, std::uint16_t type);

    /// ASCII: the text and a NUL, unless it ends in one. A value that is longer than an entry and odd gets a
    /// second NUL, which its length counts and its count does not.
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::string& text);

    /// The entry stored under `tag`, which must be there.
    IFDTag* GetElement(std::uint16_t tag, IFD* ifd);

    /// Sets the file offset of the value of `tag`, making an empty entry if there is none. Returns 0.
    int UpdateIFDTagPos(IFD* ifd, std::uint16_t tag, std::uint32_t position);

    /// Adds BlackLevel, `value` scaled by the record's ISO speed, and its repeat dimensions to the IFD of the
    /// raw image. Returns 0.
    int setBlackLevel(IFD* ifd, std::uint16_t value);

    // --- Conversion of a pair

    /// Fills the three IFDs for the record, which must be loaded; what they held is dropped. Offsets stay 0
    /// until the layout. With `lensFix` and a lens that the database holds, the record's focal length is
    /// overwritten; its 35 mm focal length is computed when it is 0. Returns 0.
    std::uint32_t createDNGTree(bool preview, bool blackLevelGiven, std::uint16_t blackLevel, bool verbose,
                                bool rawModelVariant, bool lensFix);

    // --- Writing

    /// Gives every value, IFD and strip its file offset; the raw strip has `rawBytes` bytes. Returns the
    /// length of the file in bytes, or 0 when it would reach beyond the 32 bits of a TIFF offset.
    std::uint32_t DoFileLayout(int rawBytes);

    /// Writes the IFD and its values, laid out before, at the stream's position, which must be the one of the
    /// layout. Returns 0.
    int writeSingleTree(std::ofstream& file, IFD* ifd);

    /// From now on a DNG is written only where nothing at all stands under its name; otherwise it takes the
    /// place of a file or a link that does.
    void KeepExisting() { keep_existing_ = true; }

    /// Writes the file `prefix` + `sourceName` with DNG for its extension, whole or not at all: a failure
    /// leaves what was there and prints one line with name and reason. The image data are written as they
    /// stand. Returns 0 either way: a file that can't be written does not stop the run.
    int writeDNGTree(const std::string& prefix, const std::string& sourceName, const char* rawData,
                     const char* previewData, int rawBytes, int previewBytes);

    /// The same for the record's image; `prefix` is the output folder with its separator.
    int writeDNGTree(const std::string& prefix);

    /// The same into the record's own folder.
    int writeDNGTree();

    // --- Reading and repair of a DNG that the camera wrote

    /// Reads the IFD at the stream's position into `tags`, whole values included; entries of a type without a
    /// size are skipped. Returns the position behind the last entry, where the link stands. An IFD that does
    /// not lie in the file with all its values fails the stream; so does one with which all IFDs that the
    /// object has read become longer than the file.
    int GetIFDs(std::ifstream* file, IFD* tags);

    // The `n` values that begin at `data`, which must hold them.
    static std::vector<std::uint32_t> ParseLong(const std::uint8_t* data, std::uint32_t n);
    static std::vector<std::int32_t> ParseSLong(const std::uint8_t* data, std::uint32_t n);
    static std::vector<std::uint16_t> ParseShort(const std::uint8_t* data, std::uint32_t n);
    static std::vector<SRational> ParseSRational(const std::uint8_t* data, std::uint32_t n);

    /// Repairs `folder` + `base`.DNG: decodes its 8-bit data to 14 bits, corrects them and the lens data as
    /// asked for, and writes `outputFolder` + `base`.DNG, which may be the same file. `lensCode` stands in
    /// for a lens that the camera could not recognise. GPS and interoperability data are not kept: a file
    /// with either is not replaced by its own repair, and one line with name and reason is printed. Returns
    /// 0, or the ErrorCode that ended the repair before anything was written, after printing it with the
    /// file's name.
    [[nodiscard]] int fixDNG(const std::string& folder, const std::string& base, bool verbose, bool lensFix,
                             bool sensorFix, bool darkFieldCreation, bool darkFieldFix, bool estimateRows,
                             bool lineTest, sensdb* db, const std::string& lensCode,
                             const std::string& outputFolder);

    /// Four zeros: a place for the sensor's horizontal levels, which nothing asks for yet.
    std::vector<std::uint16_t> getSensorHorzLevel();

  private:
    ReadInputData* input_;
    lensdb* lenses_;
    sensdb* sensors_;
    bool preview_ = false;  ///< IFD0 holds the preview, the SubIFD the raw image
    bool verbose_ = false;
    bool keep_existing_ = false;
    std::uint64_t directory_bytes_ = 0;  ///< read by GetIFDs so far
    TagTree tree_;
};

#endif  // VELMARCON_DNG_DNGLIB_H
