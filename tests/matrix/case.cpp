// SPDX-License-Identifier: MIT
#include "tests/matrix/case.h"

#include "tests/matrix/base_inputs.h"

namespace matrix {

void CaseList::Add(const char* group, const std::string& name, Kind kind, Pixels pixels, MakeInput input) {
    const auto& sets = OptionSets(kind);
    Add(group, name, sets[cases_.size() % sets.size()], pixels, [make = std::move(input)] {
        return Files{make(), LensDatabase(), SensorDatabase()};
    });
}

void CaseList::Add(const char* group, const std::string& name, const OptionSet& options, Pixels pixels,
                   MakeFiles files) {
    cases_.push_back({.group = group,
                      .name = std::string(group) + "/" + name,
                      .options = &options,
                      .pixels = pixels,
                      .files = std::move(files)});
}

}  // namespace matrix
