// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_CAMERA_TEXT_H
#define VELMARCON_SENSOR_CAMERA_TEXT_H

#include <string>

/// Returns `text`, that of a sensor database, without the dark levels of all cameras except `serial`: they
/// fill most of the file, and the INI library spends most of its time on them. The library reads everything
/// else as before. If it might see other lines or sections in the text than this function does, returns all
/// of the text.
std::string CameraText(const std::string& text, int serial);

#endif  // VELMARCON_SENSOR_CAMERA_TEXT_H
