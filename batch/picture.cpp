// SPDX-License-Identifier: MIT
#include "batch/picture.h"

bool IsCameraDng(const Picture& picture) {
    return !picture.name.ends_with(".RAW");
}

std::string InputOf(const Picture& picture, std::span<const Tree> trees) {
    return Join(trees[picture.tree].root, picture.name);
}

std::string DngOf(const Picture& picture, std::span<const Tree> trees) {
    return Join(trees[picture.tree].out, WithoutExtension(picture.name) + ".DNG");
}

std::string WithoutExtension(const std::string& path) {
    return path.substr(0, path.rfind('.'));
}

std::string NameIn(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string FolderIn(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}
