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

/// Texts that a database may hold in place of a number.
const std::vector<NamedText>& OddNumbers();

struct Rewriting {
    const char* name;
    std::function<std::string(const std::string& text)> rewrite;
};

/// Changes that editors may make to the text of a database.
const std::vector<Rewriting>& Rewritings();

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_ODD_TEXTS_H
