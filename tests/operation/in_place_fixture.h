#pragma once

// The in-place road with the real engine and file kit, on a disk that can be made to fail.

#include "libs/cipher/engine_fixture.h"
#include "libs/filekit/zr5_file_kit.h"
#include "operation/in_place.h"
#include "support/scripted_user.h"
#include "support/stopped_clock.h"

#include <algorithm>
#include <set>

namespace zr5::test {

using Names = std::set<std::string>;

class InPlace : public EngineTest {
  protected:
    InPlace() {
        key.keyText = SecretBytes::CopyOf(Key);
        key.keyState = key_state::Keyboard;
    }
    FileResult Process(Function function, const std::string& name) {
        setup.Operation = function;
        return ProcessInPlace({setup, key, list, machine, journal}, folder / name,
                              {{}, beforePurge});
    }
    /// Makes the folder hold nothing but `a`, plain or encrypted, as `function` wants it.
    void Prepare(Function function, const std::string& original) {
        Disk().Reset();
        folder.Empty();
        folder.Write("a", original);
        if (function == Function::Decrypt) {
            ASSERT_EQ(Process(Function::Encrypt, "a").outcome, 0);
        }
        Disk().Reset();
    }
    /// What a file decrypts to with the test's key; empty when it does not.
    static std::string Decrypted(const std::string& path) {
        Disk().Reset();
        const TemporaryFolder elsewhere;
        if (DecryptPath(path, elsewhere / "out") != 0) return {};
        return elsewhere.Read("out");
    }
    /// Whether `original` is still to be had in full, as it was or encrypted, from some file.
    bool IsSafe(const std::string& original) {
        return std::ranges::any_of(folder.Names(), [&](const std::string& name) {
            return folder.Read(name) == original || Decrypted(folder / name) == original;
        });
    }

    /// Whether the folder holds one file, "a", and that is `original`, plain or encrypted.
    bool IsWhole(const std::string& original) {
        return folder.Names() == Names{"a"} && IsSafe(original);
    }

    SystemRandom random;
    std::unique_ptr<FileKit> kit = MakeFileKit(Disk(), random);
    ScriptedUser user;
    StoppedClock clock;
    Machine machine{Disk(), Engine(), *kit, user, clock, "/usr/bin/zr5e"};
    OperationSetup setup;
    CurrentKey key;
    WorkList list;
    OperationJournal* journal = nullptr;
    std::function<void()> beforePurge;
};

} // namespace zr5::test
