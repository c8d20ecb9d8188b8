// SPDX-License-Identifier: MIT
#include "tests/matrix/option_sets.h"

namespace matrix {

namespace {

using enum Kind;
using enum Correction;

}  // namespace

const std::vector<OptionSet>& OptionSets(Kind kind) {
    static const std::vector<OptionSet> pair = {
        {kPair, kNone},
        {kPair, kNone, {"-p"}},
        {kPair, kNone, {"-b"}},
        {kPair, kNone, {"-l"}},
        {kPair, kNone, {"-l", "100001"}},
        {kPair, kLevels, {"-s"}},
        {kPair, kNone, {"-p", "-b", "200"}},
        {kPair, kNone, {"-c", "-p", "-l"}},
        {kPair, kNone, {"-v"}},
        {kPair, kDarkFrame, {"-b"}},
        {kPair, kNone, {"-r"}, true},
        {kPair, kRows, {"-sb"}},
        {kPair, kNone, {"-b", "-p", "-l", "011101"}},
    };
    static const std::vector<OptionSet> dng = {
        {kDng, kNone},
        {kDng, kNone, {"-l"}},
        {kDng, kLevels, {"-s"}},
        {kDng, kNone, {"-l", "100001"}},
        {kDng, kRows, {"-sb"}},
        {kDng, kNone, {"-v"}},
        {kDng, kLevels, {"-s", "-l"}},
        {kDng, kLineTest, {"-st"}},
        {kDng, kNone, {"-r"}, true},
        {kDng, kNewLevels, {"-sd"}},
        {kDng, kRows, {"-sb", "-l", "100001"}},
    };
    return kind == kPair ? pair : dng;
}

const std::vector<OptionSet>& LensOptionSets() {
    static const std::vector<OptionSet> sets = {
        {kPair, kNone, {"-l"}},
        {kPair, kNone, {"-l", "100001", "-p"}},
        {kDng, kNone, {"-l"}},
        {kDng, kNone, {"-l", "100001"}},
    };
    return sets;
}

const std::vector<OptionSet>& SensorOptionSets() {
    static const std::vector<OptionSet> sets = {
        {kPair, kLevels, {"-s"}},     {kPair, kRows, {"-sb"}},     {kPair, kLineTest, {"-st"}},
        {kPair, kNewLevels, {"-sd"}}, {kDng, kLevels, {"-s"}},     {kDng, kRows, {"-sb"}},
        {kDng, kLineTest, {"-st"}},   {kDng, kNewLevels, {"-sd"}},
    };
    return sets;
}

}  // namespace matrix
