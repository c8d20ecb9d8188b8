// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_TAG_TABLES_H
#define VELMARCON_TESTS_END_TO_END_TAG_TABLES_H

#include "samples/exif_block.h"
#include "tests/end_to_end/exif_tool.h"

namespace end_to_end {

/// The EXIF block of a JPEG in which every value that reaches the DNG is told from every other: ISO 640, a
/// 28 mm lens (as the camera has it) with the 6-bit code `lens_code`, f/5.72 by the camera's estimate.
samples::ExifBlock DistinctExif(std::uint8_t lens_code);

/// The tags of a DNG that is written from DistinctExif, in the form of ReadTags. Strip offsets are left out:
/// they follow from the file's size.
TagTexts RawImageTags();    ///< the raw image, in whichever IFD it stands, without its white level
TagTexts StripTags();       ///< what makes an IFD an image, beyond RawImageTags or PreviewTags
TagTexts PreviewTags();     ///< the preview in IFD0
TagTexts MainTags();        ///< IFD0, with the plain model and its colour matrices
TagTexts RawVariantTags();  ///< what the raw model variant has in IFD0 in place of those
TagTexts ExifTags();        ///< the EXIF IFD, without lens data
TagTexts MakerNoteTags();   ///< inside the maker note, lens code 33

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_TAG_TABLES_H
