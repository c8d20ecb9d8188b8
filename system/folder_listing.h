// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_FOLDER_LISTING_H
#define VELMARCON_SYSTEM_FOLDER_LISTING_H

#include <memory>
#include <optional>
#include <string>
#include <system_error>

/// The names in a folder, in the order in which the system lists them.
class FolderListing {
  public:
    /// Opens the folder at `path`.
    explicit FolderListing(const std::string& path);
    ~FolderListing();
    FolderListing(const FolderListing&) = delete;
    FolderListing& operator=(const FolderListing&) = delete;
    FolderListing(FolderListing&&) = delete;
    FolderListing& operator=(FolderListing&&) = delete;

    /// Whether the folder could be opened.
    bool IsOpen() const { return system_ != nullptr; }

    /// The next name, without its path, that does not belong to a folder; a symbolic link counts as a file,
    /// even if it leads to a folder. std::nullopt at the end. Call only if the listing is open.
    std::optional<std::string> NextFile();

    /// Why the listing ended early, or no error.
    std::error_code error() const { return error_; }

  private:
    struct System;  ///< what POSIX or Windows needs for it

    std::unique_ptr<System> system_;
    std::error_code error_;
};

#endif  // VELMARCON_SYSTEM_FOLDER_LISTING_H
