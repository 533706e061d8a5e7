#include "keys/keyfile_choice.h"

#include "keys/classification.h"
#include "keys/normalise.h"
#include "libs/cipher/safe_file.h"
#include "setup/verb_form.h"
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

    KeyfileChoice(Function operation, const KeyfileTools& tools)
        : operation_(operation), tools_(tools) {}

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
    [[nodiscard]] bool UserAcceptsKey();
    [[nodiscard]] bool Save();
    void SayUnsuitable();
    void Complete();

    [[nodiscard]] const std::string& Target() const {
        return target_ ? target_->path : candidate_.keyfilePath;
    }
    [[nodiscard]] KeyClass Class() const;

    Function operation_;
    const KeyfileTools& tools_;
    CurrentKey candidate_;
    std::optional<ChosenFile> target_; ///< what stands at the chosen path, if anything
    std::string shown_;                ///< the chosen path as it is shown
};

KeyfileChoice::Outcome KeyfileChoice::Run(KeyfileMode mode) {
    if (!PickFile(mode) || !UserAgreesToPath(mode)) return Outcome::Abandoned;
    if (candidate_.isNewRandomKey && !CanBeCreated()) return Outcome::Abandoned;
    const Outcome obtained = candidate_.isNewRandomKey ? Create() : Read();
    if (obtained != Outcome::Accepted) return obtained;
    if (!UserAcceptsKey()) return Outcome::Discarded;
    if (candidate_.isNewRandomKey && !Save()) {
        SayUnsuitable();
        return Outcome::Discarded;
    }
    Complete();
    return Outcome::Accepted;
}

bool KeyfileChoice::PickFile(KeyfileMode mode) {
    const auto chosen = tools_.user.PickFile(
        {.kind = FilePicker::Kind::Open,
         .title = mode == KeyfileMode::Create
                      ? "Specify new keyfile"
                      : "Get " + VerbForm(operation_, "encryption") + " key from keyfile",
         .filter = "All files (*.*) | *.*",
         .startFolder = {}});
    if (!chosen || chosen->empty()) return false;
    candidate_.keyfilePath = MeantPath(tools_.fileSystem, *chosen);
    target_ = ResolveChosen(tools_.fileSystem, candidate_.keyfilePath);
    shown_ = ShownKeyfile(candidate_.keyfilePath);
    return true;
}

/// Settles also whether the keyfile is going to be a new one.
bool KeyfileChoice::UserAgreesToPath(KeyfileMode mode) {
    const bool creates = mode == KeyfileMode::Create;
    candidate_.isNewRandomKey = creates || !target_;
    if (!creates && !target_)
        return tools_.user.Ask(
                   Question("Do you wish to create " + shown_ + " as a new random keyfile?",
                            "Keyfile does not exist.")) == Answer::Yes;
    if (creates && target_ && target_->kind == FileKind::Regular)
        return tools_.user.Ask(Question("Overwrite existing file " + shown_ + "?",
                                        "File exists already.", BoxIcon::Question, Answer::No)) ==
               Answer::Yes;
    return true;
}

/// Found before the user is asked to move the mouse for it.
bool KeyfileChoice::CanBeCreated() {
    std::string reason = target_ ? WhyNotAFile(target_->kind) : std::string{};
    if (reason.empty()) reason = WhyNotCreatable(tools_.fileSystem, Target());
    if (reason.empty() && target_ &&
        tools_.fileSystem.OpenForOverwriting(Target()).status != FsStatus::Ok)
        reason = "cannot be written.";
    if (reason.empty()) return true;
    tools_.user.Ask(Notice(shown_ + "\r\n" + reason + "\r\nPlease specify another keyfile.",
                           UnsuitableTitle, BoxIcon::Information));
    return false;
}

KeyfileChoice::Outcome KeyfileChoice::Read() {
    SecretBytes& buffer = candidate_.keyBuffer;
    FirstBytes read = ReadFirstBytes(tools_.fileSystem, Target(), KeyfileBytes);
    buffer = std::move(read.bytes);
    // A file whose reading breaks off would give a key that no file holds.
    if (read.status != FsStatus::Ok || !KeyLengthSufficient(buffer.text())) {
        SayUnsuitable();
        return Outcome::Discarded;
    }
    SubstituteInnerNuls(buffer);
    candidate_.isTextKey = KeyIsText(tools_.engine, buffer);
    candidate_.isApparentlyRandom =
        !candidate_.isTextKey && KeyIsApparentlyRandom(tools_.fileKit, buffer);
    return Outcome::Accepted;
}

KeyfileChoice::Outcome KeyfileChoice::Create() {
    const MessageBox repeat{"Attempt at creating random key unsuccessful.  Please repeat.",
                            "Key not sufficiently random", BoxIcon::None, BoxButtons::RetryCancel,
                            Answer::Retry};
    do {
        candidate_.keyBuffer = tools_.collector.Collect();
        if (NewKeyIsSuitable()) {
            candidate_.isApparentlyRandom = true;
            return Outcome::Accepted;
        }
    } while (tools_.user.Ask(repeat) == Answer::Retry);
    return Outcome::Abandoned;
}

bool KeyfileChoice::NewKeyIsSuitable() {
    const SecretBytes& buffer = candidate_.keyBuffer;
    return buffer.size() == KeyfileBytes && KeyLengthSufficient(buffer.text()) &&
           !KeyIsText(tools_.engine, buffer) && KeyIsApparentlyRandom(tools_.fileKit, buffer);
}

KeyClass KeyfileChoice::Class() const {
    if (candidate_.isNewRandomKey) return KeyClass::NewRandom;
    if (candidate_.isApparentlyRandom) return KeyClass::ApparentlyRandom;
    return candidate_.isTextKey ? KeyClass::Text : KeyClass::NonRandomNonText;
}

bool KeyfileChoice::UserAcceptsKey() {
    constexpr std::size_t LongestTitle = 60;
    constexpr std::size_t LongestFileLine = 66;
    const std::string title = ShortenPath(shown_, LongestTitle);
    if (tools_.user.Ask(MustAnswer("Inspect the key?", title)) != Answer::Yes) return true;
    return tools_.inspector.Inspect({.buffer = candidate_.keyBuffer,
                                     .classLine = std::string(ClassLine(Class())),
                                     .fileLine = ShortenPath(shown_, LongestFileLine),
                                     .isApparentlyRandom = candidate_.isApparentlyRandom,
                                     .isTextKey = candidate_.isTextKey,
                                     .isNewRandomKey = candidate_.isNewRandomKey});
}

/// Whatever happens to the writing: only a keyfile that holds the key afterwards will do.
bool KeyfileChoice::Save() {
    const SecretBytes& buffer = candidate_.keyBuffer;
    const FsStatus written = WriteSafely(tools_.fileSystem, tools_.random, Target(), buffer.bytes(),
                                         target_ ? IfThere::Replace : IfThere::Refuse);
    if (written != FsStatus::Ok) return false;
    const FirstBytes saved = ReadFirstBytes(tools_.fileSystem, Target(), buffer.size());
    return saved.status == FsStatus::Ok && EqualInConstantTime(saved.bytes.bytes(), buffer.bytes());
}

void KeyfileChoice::SayUnsuitable() {
    tools_.user.Ask(Notice(shown_ + " is not a suitable keyfile.", UnsuitableTitle));
}

void KeyfileChoice::Complete() {
    candidate_.keyText = NormaliseKey(candidate_.keyBuffer.text());
    candidate_.checksum = KeyChecksum(candidate_.keyText.text());
    candidate_.keyState = key_state::Keyfile;
}

} // namespace

void GetKeyFromKeyfile(KeyfileMode mode, Function operation, const KeyfileTools& tools,
                       CurrentKey& key) {
    KeyfileChoice choice(operation, tools);
    switch (choice.Run(mode)) {
    case KeyfileChoice::Outcome::Accepted:
        DiscardKey(key);
        key = choice.Take();
        return;
    case KeyfileChoice::Outcome::Discarded:
        DiscardKey(key);
        return;
    case KeyfileChoice::Outcome::Abandoned:
        key.keyChoiceAbandoned = true;
        return;
    }
}

std::string ShownKeyfile(std::string_view path) {
    const std::string shown = DisplayName(path);
    return IsWindowsShaped(path) ? TidyPath(shown) : shown;
}

} // namespace zr5
