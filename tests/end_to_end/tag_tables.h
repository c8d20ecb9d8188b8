// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_TAG_TABLES_H
#define VELMARCON_TESTS_END_TO_END_TAG_TABLES_H

#include "samples/exif_block.h"
#include "tests/end_to_end/exif_tool.h"

namespace end_to_end {

/// The EXIF block of a JPEG in which all values that reach the DNG are distinct: ISO 640, a 28 mm lens (by
/// the camera's own data) with the 6-bit code `lens_code`, f/5.72 by the camera's estimate.
samples::ExifBlock DistinctExif(std::uint8_t lens_code);

/// The tags of a DNG written from DistinctExif, in the form of ReadTags, without strip offsets, which depend
/// on the file's size.
TagTexts RawImageTags();    ///< the raw image, in either IFD, without its white level
TagTexts StripTags();       ///< every image's tags that RawImageTags and PreviewTags leave out
TagTexts PreviewTags();     ///< the preview in IFD0
TagTexts MainTags();        ///< IFD0, with the plain model and its colour matrices
TagTexts RawVariantTags();  ///< the tags of IFD0 that differ in the raw model variant
TagTexts ExifTags();        ///< the EXIF IFD, without lens data
TagTexts MakerNoteTags();   ///< inside the maker note, with lens code 33

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_TAG_TABLES_H
