#pragma once

// The rules of the window that tells the user, before a plaintext file is purged, what is about
// to happen.

#include "setup/operation_setup.h"

#include <string>

namespace zr5 {

class PurgeWarning {
  public:
    /// `chkDontShowAgain` is offered in folder mode and holds for one operation.
    explicit PurgeWarning(const OperationSetup& setup)
        : operation_(setup.Operation),
          offersDontShowAgain_(setup.InputMode == InputSource::FilesInAFolder) {}

    /// Whether it is to be shown before `path` is purged.
    [[nodiscard]] bool IsDueFor(const std::string& path) const;
    /// The text of `lblMessage`.
    [[nodiscard]] std::string MessageFor(const std::string& path) const;
    [[nodiscard]] bool OffersDontShowAgain() const { return offersDontShowAgain_; }
    /// What the window tells when it closes.
    void Closed(bool dontShowAgain) { suppressed_ = offersDontShowAgain_ && dontShowAgain; }

  private:
    Function operation_;
    bool offersDontShowAgain_;
    bool suppressed_ = false;
};

} // namespace zr5
