// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_CAMERA_TEXT_H
#define VELMARCON_SENSOR_CAMERA_TEXT_H

#include <string>

/// What there is to read in `text`, that of a sensor database, for the camera `serial`: all of it but the
/// dark levels of the other cameras, which fill most of the file and take the INI library most of its time.
/// For it the rest reads as before, and so does a text in which it might see other lines or sections than
/// this function does: that is returned as it is.
std::string CameraText(const std::string& text, int serial);

#endif  // VELMARCON_SENSOR_CAMERA_TEXT_H
