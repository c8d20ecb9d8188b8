// SPDX-License-Identifier: MIT
#include "tests/data/lens_table.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "tests/support/files.h"

namespace lens_table {

namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// The lens of a line: number,code,"model",focal lengths,widest,smallest. The model may hold commas.
Row Lens(const std::string& line) {
    const auto outer = Split(line, '"');
    const auto codes = Split(outer.at(0), ',');
    const auto optics = Split(outer.at(2), ',');
    Row row;
    row.number = std::stoul(codes.at(0));
    row.code = codes.at(1);
    row.model = outer.at(1);
    for (const std::string& length : Split(optics.at(1), ';')) {
        row.focal_lengths.push_back(std::stod(length));
    }
    row.widest = std::stod(optics.at(2));
    row.smallest = std::stod(optics.at(3));
    return row;
}

}  // namespace

std::vector<Row> Read(const std::string& path) {
    auto lines = Split(support::ReadText(path), '\n');
    lines.erase(lines.begin());  // the names of the columns
    std::vector<Row> rows;
    std::ranges::transform(lines, std::back_inserter(rows), Lens);
    return rows;
}

}  // namespace lens_table
