// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_ODD_TEXTS_H
#define VELMARCON_TESTS_MATRIX_ODD_TEXTS_H

#include <functional>
#include <string>
#include <vector>

namespace matrix {

struct NamedText {
    std::string name;
    std::string text;
};

/// What may stand in a database in the place of a number.
const std::vector<NamedText>& OddNumbers();

struct Rewriting {
    const char* name;
    std::function<std::string(const std::string& text)> rewrite;
};

/// What may become of a database's text on its way through editors.
const std::vector<Rewriting>& Rewritings();

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_ODD_TEXTS_H
