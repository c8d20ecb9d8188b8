// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_EDITS_H
#define VELMARCON_TESTS_MATRIX_EDITS_H

#include <string>
#include <vector>

#include "samples/tiff_entry.h"
#include "tests/matrix/base_inputs.h"
#include "tests/matrix/case.h"

namespace matrix {

/// An IFD of one kind of input, with its entries as the camera writes them.
struct EditableDirectory {
    Kind kind;
    Directory directory;
    std::vector<samples::Entry> entries;

    /// For example "dng/exif".
    std::string Name() const;
};

/// The seven IFDs of the JPEG and the DNG.
const std::vector<EditableDirectory>& EditableDirectories();

/// Adds the case that results from applying `edit` to an IFD.
void AddEdit(CaseList& cases, const char* group, const EditableDirectory& where, const std::string& name,
             Pixels pixels, const Edit& edit);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_EDITS_H
