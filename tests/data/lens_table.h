// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_DATA_LENS_TABLE_H
#define VELMARCON_TESTS_DATA_LENS_TABLE_H

#include <string>
#include <vector>

namespace lens_table {

/// A line of data/lens-codes.csv.
struct Row {
    unsigned long number = 0;           ///< the code as a number
    std::string code;                   ///< the code as six digits
    std::string model;                  ///< without quotes
    std::vector<double> focal_lengths;  ///< mm, ascending
    double widest = 0;                  ///< f-number
    double smallest = 0;                ///< f-number
};

/// All lenses of the table at `path`, in its order. Throws if a line is not a lens.
std::vector<Row> Read(const std::string& path);

}  // namespace lens_table

#endif  // VELMARCON_TESTS_DATA_LENS_TABLE_H
