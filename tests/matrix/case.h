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

/// What a case is sure of about the raw image of a DNG that comes of it.
enum class Pixels : std::uint8_t {
    kKnown,  ///< that of the undamaged input, corrected for one of the camera's speeds or not at all
    kAny,    ///< nothing: the damage may have changed it
};

/// The files of a case that differ from case to case.
struct Files {
    Bytes input;          ///< the JPEG of the pair, or the DNG
    std::string lenses;   ///< lensdb.ini
    std::string sensors;  ///< sensdb.ini
};

struct Case {
    const char* group = "";
    std::string name;  ///< no two cases have the same
    const OptionSet* options = nullptr;
    Pixels pixels = Pixels::kAny;
    std::function<Files()> files;
};

/// The cases of a run, in order.
class CaseList {
  public:
    using MakeInput = std::function<Bytes()>;
    using MakeFiles = std::function<Files()>;

    /// A damaged input with good databases. The options are those whose turn it is.
    void Add(const char* group, const std::string& name, Kind kind, Pixels pixels, MakeInput input);
    /// A damaged database and the options that use it.
    void Add(const char* group, const std::string& name, const OptionSet& options, Pixels pixels,
             MakeFiles files);

    const std::vector<Case>& cases() const { return cases_; }

  private:
    std::vector<Case> cases_;
};

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_CASE_H
