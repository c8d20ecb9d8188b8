// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_DNGLIB_H
#define VELMARCON_DNG_DNGLIB_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "base/pixel.h"
#include "dng/ifd.h"
#include "dng/tag_tree.h"
#include "exif/lensdb.h"
#include "tiff/rational.h"

class ReadInputData;
class sensdb;

/// The tag tree of one DNG file in memory (TIFF 6.0, DNG 1.4): builds it for a pair or reads it from a camera
/// DNG, lays it out and writes it.
class DNGlib {
  public:
    using IFDTag = ::IFDTag;
    using IFD = ::IFD;

    /// For converting a pair. The object does not own the record and the databases, which must outlive it.
    DNGlib(ReadInputData* input, lensdb* lenses, sensdb* sensors);

    /// For repairing a camera DNG, without a record.
    DNGlib(lensdb* lenses, sensdb* sensors);

    /// The three IFDs; the SubIFD is empty unless IFD0 holds a preview.
    const IFD& ifd0() const { return tree_.ifd0; }
    const IFD& sub_ifd() const { return tree_.sub_ifd; }
    const IFD& exif_ifd() const { return tree_.exif_ifd; }

    // --- Tag model; the program itself uses the functions of dng/ifd.h. Each AddIFDTag stores a new entry
    // under `tag`, replacing an existing one, and returns 0.

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

    /// An ASCII value: the text and, unless it already ends in one, a NUL. A value that does not fit into its
    /// entry and has an odd length gets a second NUL, which its `length` includes and its `count` does not.
    int AddIFDTag(IFD* ifd, std::uint16_t tag, const std::string& text);

    /// The entry of `tag`, which must exist.
    IFDTag* GetElement(std::uint16_t tag, IFD* ifd);

    /// Sets the file offset of the value of `tag`, making an empty entry if there is none. Returns 0.
    int UpdateIFDTagPos(IFD* ifd, std::uint16_t tag, std::uint32_t position);

    /// Adds BlackLevel, `value` scaled by the record's ISO speed, and its repeat dimensions to the IFD of the
    /// raw image. Returns 0.
    int setBlackLevel(IFD* ifd, std::uint16_t value);

    // --- Conversion of a pair

    /// Fills the three IFDs for the record, which must be loaded; their old content is dropped. Offsets stay
    /// 0 until the layout. With `lensFix` and a lens that the database knows, overwrites the record's focal
    /// length. Computes the record's 35 mm focal length if it is 0. Returns 0.
    std::uint32_t createDNGTree(bool preview, bool blackLevelGiven, std::uint16_t blackLevel, bool verbose,
                                bool rawModelVariant, bool lensFix);

    // --- Writing

    /// Gives every value, IFD and strip its file offset; the raw strip has `rawBytes` bytes. Returns the
    /// length of the file in bytes, or 0 if the file would be too long for 32-bit TIFF offsets.
    std::uint32_t DoFileLayout(int rawBytes);

    /// Writes the IFD and its values, which must have been laid out, at the stream's position, which must
    /// match the layout. Returns 0.
    int writeSingleTree(std::ofstream& file, IFD* ifd);

    /// From now on, writes a DNG only if its name is free. By default, a DNG replaces an existing file or
    /// link.
    void KeepExisting() { keep_existing_ = true; }

    /// Writes the file `prefix` + `sourceName`, with the extension DNG, completely or not at all: a failure
    /// leaves an existing file unchanged and prints one line with the name and the reason. Writes the image
    /// data as they are. Always returns 0: a file that cannot be written does not stop the run.
    int writeDNGTree(const std::string& prefix, const std::string& sourceName, const char* rawData,
                     const char* previewData, int rawBytes, int previewBytes);

    /// Writes the DNG of the record's image; `prefix` is the output folder with its separator.
    int writeDNGTree(const std::string& prefix);

    /// Writes the DNG of the record's image into the record's own folder.
    int writeDNGTree();

    // --- Reading and repair of camera DNGs

    /// Reads the IFD at the stream's position into `tags`, with all values; skips entries of a type other
    /// than 1 to 10. Returns the position after the last entry, which is that of the link. Fails the stream
    /// if the IFD or one of its values is not completely in the file, or if all IFDs read by this object
    /// together are longer than the file.
    int GetIFDs(std::ifstream* file, IFD* tags);

    // The `n` values at `data`, which must hold that many.
    static std::vector<std::uint32_t> ParseLong(const std::uint8_t* data, std::uint32_t n);
    static std::vector<std::int32_t> ParseSLong(const std::uint8_t* data, std::uint32_t n);
    static std::vector<std::uint16_t> ParseShort(const std::uint8_t* data, std::uint32_t n);
    static std::vector<SRational> ParseSRational(const std::uint8_t* data, std::uint32_t n);

    /// Repairs `folder` + `base`.DNG: decodes its 8-bit data to 14 bits, corrects them and the lens data
    /// according to the flags, and writes `outputFolder` + `base`.DNG, which may be the same file. If the
    /// camera saw no coded lens, `lensCode` is used. GPS and interoperability data are not kept; a file with
    /// either is therefore not replaced by its own repair, and a line with the name and the reason is
    /// printed. Returns 0, or the ErrorCode that ended the repair before anything was written, after printing
    /// it with the file's name.
    [[nodiscard]] int fixDNG(const std::string& folder, const std::string& base, bool verbose, bool lensFix,
                             bool sensorFix, bool darkFieldCreation, bool darkFieldFix, bool estimateRows,
                             bool lineTest, sensdb* db, const std::string& lensCode,
                             const std::string& outputFolder);

    /// The memory for the pixels of a repair. A caller that repairs several files saves time by handing it
    /// from one object to the next.
    std::vector<Pixel>& frame() { return frame_; }

    /// Four zeros, a placeholder for the sensor's horizontal levels. Nothing uses it yet.
    std::vector<std::uint16_t> getSensorHorzLevel();

  private:
    ReadInputData* input_;
    lensdb* lenses_;
    sensdb* sensors_;
    bool preview_ = false;  ///< IFD0 holds the preview and the SubIFD the raw image
    bool verbose_ = false;
    bool keep_existing_ = false;
    std::uint64_t directory_bytes_ = 0;  ///< read by GetIFDs so far
    TagTree tree_;
    std::vector<Pixel> frame_;
};

#endif  // VELMARCON_DNG_DNGLIB_H
