// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_CASE_H
#define VELMARCON_TESTS_MATRIX_CASE_H

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/matrix/bytes.h"
#include "tests/matrix/option_sets.h"

namespace matrix {

/// What is known about the raw image of a case's DNG.
enum class Pixels : std::uint8_t {
    kKnown,  ///< it equals that of the undamaged input, either uncorrected or corrected for one of the
             ///< camera's ISO speeds
    kAny,    ///< nothing, because the damage may have changed it
};

/// The files that differ from case to case.
struct Files {
    Bytes input;          ///< the JPEG of the pair, or the DNG
    std::string lenses;   ///< lensdb.ini
    std::string sensors;  ///< sensdb.ini
};

struct Case {
    const char* group = "";
    std::string name;  ///< unique
    const OptionSet* options = nullptr;
    Pixels pixels = Pixels::kAny;
    std::function<Files()> files;
};

/// The cases of a run, in order.
class CaseList {
  public:
    using MakeInput = std::function<Bytes()>;
    using MakeFiles = std::function<Files()>;

    /// Adds a case with a damaged input and good databases. The option sets are used in turn.
    void Add(const char* group, const std::string& name, Kind kind, Pixels pixels, MakeInput input);
    /// Adds a case with a damaged database and options that use it.
    void Add(const char* group, const std::string& name, const OptionSet& options, Pixels pixels,
             MakeFiles files);

    const std::vector<Case>& cases() const { return cases_; }

  private:
    std::vector<Case> cases_;
};

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_CASE_H
