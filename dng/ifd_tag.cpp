// SPDX-License-Identifier: MIT
// The tag model of DNGlib; dng/ifd.h does the work.
#include <span>
#include <string>
#include <vector>

#include "dng/dnglib.h"

namespace {

template <typename T>
int AddArray(IFD* ifd, std::uint16_t tag, const T* values, std::uint32_t n) {
    ifd::Add(*ifd, tag, std::span<const T>(values, n));
    return 0;
}

/// `Pair` is Rational or SRational; T is the type of its members.
template <typename Pair, typename T>
int AddPairs(IFD* ifd, std::uint16_t tag, const T* numerators, const T* denominators, std::uint32_t n) {
    std::vector<Pair> pairs;
    for (std::uint32_t i = 0; i < n; ++i) {
        pairs.push_back({numerators[i], denominators[i]});
    }
    return AddArray(ifd, tag, pairs.data(), n);
}

}  // namespace

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint8_t* data, std::uint16_t type,
                      std::uint32_t byteCount) {
    ifd::AddBytes(*ifd, tag, type, {data, byteCount});
    return 0;
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint8_t* values, std::uint32_t n) {
    return AddArray(ifd, tag, values, n);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const char* values, std::uint32_t n) {
    return AddArray(ifd, tag, reinterpret_cast<const std::int8_t*>(values), n);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint16_t* values, std::uint32_t n) {
    return AddArray(ifd, tag, values, n);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const std::int16_t* values, std::uint32_t n) {
    return AddArray(ifd, tag, values, n);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint32_t* values, std::uint32_t n) {
    return AddArray(ifd, tag, values, n);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const std::int32_t* values, std::uint32_t n) {
    return AddArray(ifd, tag, values, n);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const std::uint32_t* numerators,
                      const std::uint32_t* denominators, std::uint32_t n) {
    return AddPairs<Rational>(ifd, tag, numerators, denominators, n);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const std::int32_t* numerators,
                      const std::int32_t* denominators, std::uint32_t n) {
    return AddPairs<SRational>(ifd, tag, numerators, denominators, n);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint32_t value) {
    return AddArray(ifd, tag, &value, 1);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, std::int32_t value) {
    return AddArray(ifd, tag, &value, 1);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint16_t value) {
    return AddArray(ifd, tag, &value, 1);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, std::int16_t value) {
    return AddArray(ifd, tag, &value, 1);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint8_t value) {
    return AddArray(ifd, tag, &value, 1);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, char value) {
    return AddIFDTag(ifd, tag, &value, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint32_t numerator, std::uint32_t denominator) {
    return AddPairs<Rational>(ifd, tag, &numerator, &denominator, 1);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, std::int32_t numerator, std::int32_t denominator) {
    return AddPairs<SRational>(ifd, tag, &numerator, &denominator, 1);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, std::uint8_t value, std::uint16_t type) {
    return AddIFDTag(ifd, tag, &value, type, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, std::uint16_t tag, const std::string& text) {
    ifd::Add(*ifd, tag, text);
    return 0;
}

DNGlib::IFDTag* DNGlib::GetElement(std::uint16_t tag, IFD* ifd) {
    return &ifd->at(tag);
}

int DNGlib::UpdateIFDTagPos(IFD* ifd, std::uint16_t tag, std::uint32_t position) {
    (*ifd)[tag].position = position;
    return 0;
}
