// SPDX-License-Identifier: MIT
#include "tests/matrix/odd_texts.h"

#include <cctype>

namespace matrix {

namespace {

std::string Replaced(const std::string& text, char what, const std::string& by) {
    std::string result;
    for (const char c : text) {
        if (c == what) {
            result += by;
        } else {
            result += c;
        }
    }
    return result;
}

std::string Without(const std::string& text, char what) {
    return Replaced(text, what, "");
}

/// Two bytes per character.
std::string Utf16(const std::string& text, bool big_endian) {
    std::string wide = big_endian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text) {
        wide += big_endian ? '\0' : c;
        wide += big_endian ? c : '\0';
    }
    return wide;
}

std::string UpperCase(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return text;
}

std::string Repeated(const std::string& text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

}  // namespace

const std::vector<NamedText>& OddNumbers() {
    static const std::vector<NamedText> numbers = {
        {"nan", "nan"},
        {"minus-nan", "-nan"},
        {"nan-of-bits", "NAN(0x123)"},
        {"inf", "inf"},
        {"infinity", "INFINITY"},
        {"minus-inf", "-inf"},
        {"1e308", "1e308"},
        {"minus-1e308", "-1e308"},
        {"1e309", "1e309"},
        {"1e-320", "1e-320"},
        {"1e-400", "1e-400"},
        {"1e39", "1e39"},
        {"largest-float", "3.40282347e+38"},
        {"above-the-largest-float", "3.4028235677973366e+38"},
        {"minus-1", "-1"},
        {"0", "0"},
        {"minus-0", "-0.0"},
        {"1,5", "1,5"},
        {"1.5", "1.5"},
        {"0x10", "0x10"},
        {"octal", "0777"},
        {"plus", "+5"},
        {"spaces", "   7\t"},
        {"32767.5", "32767.5"},
        {"65535", "65535"},
        {"65536", "65536"},
        {"2147483647", "2147483647"},
        {"2147483648", "2147483648"},
        {"minus-2147483649", "-2147483649"},
        {"4294967295", "4294967295"},
        {"4294967296", "4294967296"},
        {"9223372036854775807", "9223372036854775807"},
        {"9223372036854775808", "9223372036854775808"},
        {"18446744073709551616", "18446744073709551616"},
        {"empty", ""},
        {"word", "five"},
        {"comment", "; 5"},
        {"with-comment", "5 ; 6"},
        {"equals", "5 = 6"},
        {"printf", "%s%n%d"},
        {"high-bytes", "\xFF\xFE\x80"},
        {"digits", std::string(5000, '9')},
        {"fraction-digits", "0." + std::string(5000, '3')},
        {"zeros", std::string(20000, '0') + "1"},
        {"exponent-digits", "1e" + std::string(400, '9')},
        {"letters", std::string(20000, 'x')},
    };
    return numbers;
}

const std::vector<Rewriting>& Rewritings() {
    using Text = std::string;
    static const std::vector<Rewriting> rewritings = {
        {"as-it-is", [](const Text& text) { return text; }},
        {"empty", [](const Text&) { return Text(); }},
        {"line-end", [](const Text&) { return Text("\n"); }},
        {"nuls", [](const Text&) { return Text(5000, '\0'); }},
        {"bracket", [](const Text&) { return Text("["); }},
        {"equals-signs", [](const Text&) { return Text(5000, '='); }},
        {"brackets", [](const Text&) { return Text(5000, '['); }},
        {"comment", [](const Text& text) { return ";" + Replaced(text, '\n', "\n;"); }},
        {"crlf", [](const Text& text) { return Replaced(text, '\n', "\r\n"); }},
        {"cr", [](const Text& text) { return Replaced(text, '\n', "\r"); }},
        {"lfcr", [](const Text& text) { return Replaced(text, '\n', "\n\r"); }},
        {"empty-lines", [](const Text& text) { return Replaced(text, '\n', "\n\n \n"); }},
        {"one-line", [](const Text& text) { return Without(text, '\n'); }},
        {"no-last-line-end", [](const Text& text) { return text.substr(0, text.size() - 1); }},
        {"half", [](const Text& text) { return text.substr(0, text.size() / 2); }},
        {"bom", [](const Text& text) { return "\xEF\xBB\xBF" + text; }},
        {"bom-alone", [](const Text&) { return Text("\xEF\xBB\xBF"); }},
        {"utf-16-le", [](const Text& text) { return Utf16(text, false); }},
        {"utf-16-be", [](const Text& text) { return Utf16(text, true); }},
        {"twice", [](const Text& text) { return text + text; }},
        {"five-times", [](const Text& text) { return Repeated(text, 5); }},
        {"no-section", [](const Text& text) { return text.substr(text.find('\n') + 1); }},
        {"section-without-end", [](const Text& text) { return Without(text, ']'); }},
        {"section-without-start", [](const Text& text) { return Without(text, '['); }},
        {"no-values", [](const Text& text) { return Without(text, '='); }},
        {"two-equals", [](const Text& text) { return Replaced(text, '=', "=="); }},
        {"no-keys", [](const Text& text) { return Replaced(text, '\n', "\n="); }},
        {"spaces", [](const Text& text) { return Replaced(Replaced(text, '=', " \t=  "), '\n', "  \n\t "); }},
        {"no-spaces", [](const Text& text) { return Without(text, ' '); }},
        {"upper-case", UpperCase},
        {"nul-after-each-line", [](const Text& text) { return Replaced(text, '\n', Text("\n\0", 2)); }},
        {"nul-before-each-value", [](const Text& text) { return Replaced(text, '=', Text("=\0", 2)); }},
        {"nul-in-front", [](const Text& text) { return Text(1, '\0') + text; }},
        {"unfinished-text", [](const Text& text) { return text + "Maker = <<<END\nno end\n"; }},
        {"finished-text", [](const Text& text) { return text + "Maker = <<<END\nno end\nEND\n"; }},
        {"high-bytes", [](const Text& text) { return Replaced(text, '=', "= \xFF\x80"); }},
        {"many-sections",
         [](const Text& text) {
             Text sections;
             for (int number = 0; number < 20000; ++number) {
                 sections += "[" + std::to_string(number) + "]\nLine=1\n";
             }
             return sections + text;
         }},
        {"many-empty-sections", [](const Text& text) { return Repeated("[1]\n[]\n", 20000) + text; }},
        {"many-keys",
         [](const Text& text) {
             Text keys = text;
             for (int number = 0; number < 20000; ++number) {
                 keys += "Key" + std::to_string(number) + " = 1\n";
             }
             return keys;
         }},
        {"long-name", [](const Text& text) { return text + "[" + Text(100000, '1') + "]\nLine = 1\n"; }},
        {"long-key", [](const Text& text) { return text + Text(100000, 'k') + " = 1\n"; }},
        {"long-line", [](const Text& text) { return text + "Line = " + Text(1000000, '1') + "\n"; }},
    };
    return rewritings;
}

}  // namespace matrix
