#pragma once

// The kinds of file that an operation treats in a way of their own, by extension, and what the
// user is told of them.

#include "setup/operation_setup.h"
#include "util/user_port.h"

#include <cstdint>
#include <map>
#include <string>

namespace zr5 {

/// Programs and system files, which are never encrypted in place and which anti-virus programs
/// watch (`InPlaceExcludedExtensions`). `extension` is lower-cased and has no dot.
[[nodiscard]] bool IsInPlaceExcludedExtension(const std::string& extension);

/// How many files there are of each extension that anti-virus programs watch.
class ExtensionCounts {
  public:
    /// `extension` is lower-cased and has no dot; others than those are not counted.
    void Add(const std::string& extension);
    [[nodiscard]] const std::map<std::string, std::uint64_t>& ByExtension() const {
        return counts_;
    }
    [[nodiscard]] std::uint64_t Files() const;

  private:
    std::map<std::string, std::uint64_t> counts_;
};

/// Warns in a box of anti-virus programs, if any such file was counted.
void WarnOfAntiVirus(UserPort& user, const ExtensionCounts& counts);

/// The rules of the window that tells the user, before a plaintext file is purged, what is about
/// to happen. It is shown for documents, pictures, mail and archives, to whose purging anti-virus
/// programs may object.
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
    Direction operation_;
    bool offersDontShowAgain_;
    bool suppressed_ = false;
};

} // namespace zr5
