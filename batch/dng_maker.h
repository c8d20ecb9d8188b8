// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_DNG_MAKER_H
#define VELMARCON_BATCH_DNG_MAKER_H

#include <string>

#include "batch/conversion.h"
#include "batch/jobs.h"
#include "batch/picture_at_work.h"
#include "batch/proof/dng_proof.h"

/// Makes the DNG of a picture, and looks at what was made.
class DngMaker {
  public:
    /// Everything is owned by the caller.
    DngMaker(const WorkerSettings& options, Conversion& conversion)
        : options_(options),
          conversion_(conversion),
          proof_(conversion.settings(), conversion.lenses(), conversion.sensors()) {}

    /// Under the name that the picture's record has. What becomes of it, the record tells.
    void Make(PictureAtWork& picture);

  private:
    std::string Convert(PictureAtWork& picture);
    std::string ConvertUnderFreeName(const PictureAtWork& picture, const std::string& folder);
    void Judge(const std::string& reason, PictureAtWork& picture);
    void Prove(PictureAtWork& picture);

    const WorkerSettings& options_;
    Conversion& conversion_;
    DngProof proof_;
};

#endif  // VELMARCON_BATCH_DNG_MAKER_H
