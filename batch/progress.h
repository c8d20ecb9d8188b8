// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROGRESS_H
#define VELMARCON_BATCH_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <string>

/// Tells how far a run is: on one line of the terminal; without one, in a line now and then.
class Progress {
  public:
    /// Of `total` pictures, `settled` needed no work. With `quiet`, nothing is told.
    Progress(std::size_t total, std::size_t settled, bool quiet);

    /// Called as often as one likes.
    void Show(std::size_t done, std::size_t failed);

    /// Takes the terminal's line away.
    void Clear();

    /// Seconds since the beginning.
    double Elapsed() const;

  private:
    std::string Line(std::size_t done, std::size_t failed) const;

    std::size_t total_;
    std::size_t settled_;
    unsigned int width_;  ///< of the terminal; 0: there is none
    bool quiet_;
    bool shown_ = false;
    std::chrono::steady_clock::time_point begin_;
    std::chrono::steady_clock::time_point last_;
};

#endif  // VELMARCON_BATCH_PROGRESS_H
