// SPDX-License-Identifier: MIT
#include "batch/conversion.h"

#include "app/conversion_run.h"
#include "base/error_codes.h"
#include "batch/conversion_options.h"

Conversion::Conversion(std::span<const std::string> options, const std::string& databases,
                       CapturedOutput& output)
    : output_(output),
      settings_(conversion_options::Settings(options)),
      lenses_(databases),
      sensors_(databases) {
    // A missing database matters only to -l, and an empty one tells it then.
    (void)lenses_.LoadLensData();
}

Conversion::~Conversion() = default;

std::string Conversion::Run(const std::string& folder, const std::string& name, const std::string& output) {
    if (settings_.lens_fix && lenses_.Lenses.empty()) {
        errors_.PrintError(kNoLensDatabase);
        return output_.Take();
    }
    if (settings_.input.folder != folder || settings_.output_folder != output) {
        Forget();
    }
    settings_.input = {folder, {name}};
    settings_.output_folder = output;
    if (run_ == nullptr) {
        run_ = std::make_unique<ConversionRun>(settings_, lenses_, sensors_, errors_);
    }
    (void)run_->Run();
    return output_.Take();
}

void Conversion::Forget() {
    run_.reset();
}
