#include "keys/keyfile_choice.h"

#include "keys/classification.h"
#include "keys/normalise.h"
#include "libs/system/safe_file.h"
#include "setup/wording.h"
#include "util/chosen_file.h"
#include "util/display.h"
#include "util/paths.h"
#include "util/text.h"

#include <optional>
#include <utility>

namespace zr5 {
namespace {

constexpr const char* UnsuitableTitle = "Unsuitable keyfile";

/// One choice. It works on a candidate of its own; the current key is changed at the end.
class KeyfileChoice {
  public:
    enum class Outcome { Accepted, Abandoned, Discarded };

    KeyfileChoice(Direction operation, Machine& machine, const KeyWindows& windows,
                  const CurrentKey& inUse)
        : operation_(operation), machine_(machine), windows_(windows), inUse_(inUse) {
        candidate_.keyState = KeyState::Keyfile;
    }

    Outcome Run(KeyfileMode mode);
    /// The key that was accepted.
    CurrentKey Take() { return std::move(candidate_); }

  private:
    [[nodiscard]] bool PickFile(KeyfileMode mode);
    [[nodiscard]] bool UserAgreesToPath(KeyfileMode mode);
    [[nodiscard]] bool CanBeCreated();
    Outcome Read();
    Outcome Create();
    [[nodiscard]] bool NewKeyIsSuitable();
    Outcome AskAboutKey();
    [[nodiscard]] bool Save();
    void SayUnsuitable();
    void Complete();

    [[nodiscard]] const std::string& Target() const {
        return target_ ? target_->path : candidate_.keyfilePath;
    }

    Direction operation_;
    Machine& machine_;
    KeyWindows windows_;
    const CurrentKey& inUse_;
    CurrentKey candidate_;
    std::optional<ChosenFile> target_; ///< what stands at the chosen path, if anything
    std::string shown_;                ///< the chosen path as it is shown
};

KeyfileChoice::Outcome KeyfileChoice::Run(KeyfileMode mode) {
    if (!PickFile(mode) || !UserAgreesToPath(mode)) return Outcome::Abandoned;
    if (candidate_.isNewRandomKey && !CanBeCreated()) return Outcome::Abandoned;
    const Outcome obtained = candidate_.isNewRandomKey ? Create() : Read();
    if (obtained != Outcome::Accepted) return obtained;
    const Outcome accepted = AskAboutKey();
    if (accepted != Outcome::Accepted) return accepted;
    if (candidate_.isNewRandomKey && !Save()) {
        SayUnsuitable();
        return Outcome::Discarded;
    }
    Complete();
    return Outcome::Accepted;
}

bool KeyfileChoice::PickFile(KeyfileMode mode) {
    const auto chosen = machine_.user.PickFile(
        {.kind = FilePicker::Kind::Open,
         .title = mode == KeyfileMode::Create
                      ? "Specify new keyfile"
                      : "Get " + VerbForm(operation_, "encryption") + " key from keyfile",
         .filter = "All files (*.*) | *.*",
         .startFolder = {}});
    if (!chosen || chosen->empty()) return false;
    candidate_.keyfilePath = MeantPath(machine_.fileSystem, *chosen);
    target_ = ResolveChosen(machine_.fileSystem, candidate_.keyfilePath);
    shown_ = ShownKeyfile(candidate_.keyfilePath);
    return true;
}

/// Settles also whether the keyfile is going to be a new one.
bool KeyfileChoice::UserAgreesToPath(KeyfileMode mode) {
    const bool creates = mode == KeyfileMode::Create;
    candidate_.isNewRandomKey = creates || !target_;
    if (!creates && !target_)
        return machine_.user.Ask(
                   Question("Do you wish to create " + shown_ + " as a new random keyfile?",
                            "Keyfile does not exist.")) == Answer::Yes;
    if (!creates || !target_ || target_->kind != FileKind::Regular) return true;
    MessageBox question = OverwriteQuestion(shown_);
    if (IsKeyfileOf(inUse_, machine_.fileSystem, target_->path)) {
        question.text += "\r\nThis is the current keyfile: files that were encrypted with it "
                         "cannot be decrypted any more.";
    }
    return machine_.user.Ask(question) == Answer::Yes;
}

/// Found before the user is asked to move the mouse for it.
bool KeyfileChoice::CanBeCreated() {
    std::string reason = target_ ? WhyNotAFile(target_->kind) : std::string{};
    if (reason.empty()) reason = WhyNotCreatable(machine_.fileSystem, Target());
    if (reason.empty() && target_ &&
        machine_.fileSystem.OpenForOverwriting(Target()).status != FsStatus::Ok)
        reason = "cannot be written.";
    if (reason.empty()) return true;
    machine_.user.Ask(Notice(shown_ + "\r\n" + reason + "\r\nPlease specify another keyfile.",
                             UnsuitableTitle, BoxIcon::Information));
    return false;
}

KeyfileChoice::Outcome KeyfileChoice::Read() {
    SecretBytes& buffer = candidate_.keyBuffer;
    FirstBytes read = ReadFirstBytes(machine_.fileSystem, Target(), KeyfileBytes);
    buffer = std::move(read.bytes);
    // A file whose reading breaks off would give a key that no file holds.
    if (read.status != FsStatus::Ok || !KeyLengthSufficient(buffer.text())) {
        SayUnsuitable();
        return Outcome::Discarded;
    }
    // The substitutes, which all differ, would make many a file with NULs look random.
    const bool looksRandom = KeyIsApparentlyRandom(machine_.fileKit, buffer);
    SubstituteInnerNuls(buffer);
    candidate_.isTextKey = KeyIsText(buffer.text());
    candidate_.isApparentlyRandom = !candidate_.isTextKey && looksRandom;
    return Outcome::Accepted;
}

KeyfileChoice::Outcome KeyfileChoice::Create() {
    const MessageBox repeat{"Attempt at creating random key unsuccessful.  Please repeat.",
                            "Key not sufficiently random", BoxIcon::None, BoxButtons::RetryCancel,
                            Answer::Retry};
    do {
        candidate_.keyBuffer = windows_.collector.Collect();
        if (NewKeyIsSuitable()) {
            candidate_.isApparentlyRandom = true;
            return Outcome::Accepted;
        }
    } while (machine_.user.Ask(repeat) == Answer::Retry);
    return Outcome::Abandoned;
}

bool KeyfileChoice::NewKeyIsSuitable() {
    const SecretBytes& buffer = candidate_.keyBuffer;
    return buffer.size() == KeyfileBytes && KeyLengthSufficient(buffer.text()) &&
           !KeyIsText(buffer.text()) && KeyIsApparentlyRandom(machine_.fileKit, buffer);
}

KeyfileChoice::Outcome KeyfileChoice::AskAboutKey() {
    constexpr std::size_t LongestTitle = 60;
    constexpr std::size_t LongestFileLine = 66;
    const std::string title = ShortenPath(shown_, LongestTitle);
    const Answer answer = machine_.user.Ask(MustAnswer("Inspect the key?", title));
    if (answer == Answer::Cancel) return Outcome::Abandoned;
    if (answer != Answer::Yes) return Outcome::Accepted;
    const bool accepts =
        windows_.inspector.Inspect({.buffer = candidate_.keyBuffer,
                                    .classLine = std::string(ClassLine(candidate_.Source())),
                                    .fileLine = ShortenPath(shown_, LongestFileLine),
                                    .isApparentlyRandom = candidate_.isApparentlyRandom,
                                    .isTextKey = candidate_.isTextKey,
                                    .isNewRandomKey = candidate_.isNewRandomKey});
    return accepts ? Outcome::Accepted : Outcome::Discarded;
}

/// Whatever happens to the writing: only a keyfile that holds the key afterwards will do.
bool KeyfileChoice::Save() {
    const SecretBytes& buffer = candidate_.keyBuffer;
    const FsStatus written =
        WriteSafely(machine_.fileSystem, machine_.random, Target(), buffer.bytes(),
                    target_ ? IfThere::Replace : IfThere::Refuse);
    if (written != FsStatus::Ok) return false;
    const FirstBytes saved = ReadFirstBytes(machine_.fileSystem, Target(), buffer.size());
    return saved.status == FsStatus::Ok && EqualInConstantTime(saved.bytes.bytes(), buffer.bytes());
}

void KeyfileChoice::SayUnsuitable() {
    machine_.user.Ask(Notice(shown_ + " is not a suitable keyfile.", UnsuitableTitle));
}

void KeyfileChoice::Complete() {
    candidate_.keyText = NormaliseKey(candidate_.keyBuffer.text());
    candidate_.checksum = KeyChecksum(candidate_.keyText.text());
}

} // namespace

void GetKeyFromKeyfile(KeyfileMode mode, Direction operation, Machine& machine,
                       const KeyWindows& windows, CurrentKey& key) {
    KeyfileChoice choice(operation, machine, windows, key);
    switch (choice.Run(mode)) {
    case KeyfileChoice::Outcome::Accepted:
        ReplaceKey(key, choice.Take(), machine.engine);
        return;
    case KeyfileChoice::Outcome::Discarded:
        EraseKey(key, machine.engine);
        return;
    case KeyfileChoice::Outcome::Abandoned:
        key.keyChoiceAbandoned = true;
        return;
    }
}

bool IsKeyfileOf(const CurrentKey& key, FileSystem& fileSystem, const std::string& path) {
    if (key.keyState != KeyState::Keyfile) return false;
    if (SameFile(fileSystem, path, key.keyfilePath)) return true;
    FirstBytes read = ReadFirstBytes(fileSystem, path, KeyfileBytes);
    if (read.status != FsStatus::Ok) return false;
    SubstituteInnerNuls(read.bytes);
    return EqualInConstantTime(NormaliseKey(read.bytes.text()).bytes(), key.keyText.bytes());
}

std::string ShownKeyfile(std::string_view path) {
    const std::string shown = DisplayName(path);
    return IsWindowsShaped(path) ? TidyPath(shown) : shown;
}

} // namespace zr5
