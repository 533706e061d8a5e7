#include "operation/checks.h"

#include "operation/disk_space.h"
#include "operation/operation_fixture.h"

#include <filesystem>

namespace zr5::test {
namespace {

class FakeConfirmation : public ConfirmationView {
  public:
    ConfirmationAnswer answer = ConfirmationAnswer::Yes;
    std::vector<Confirmation> asked;
    ConfirmationAnswer Confirm(const Confirmation& confirmation) override {
        asked.push_back(confirmation);
        return answer;
    }
};

class Checks : public OperationTest {
  protected:
    Checks() {
        kit.texts[50] = "The output file is the same as the input file.";
        folder.Write("a.txt", "abc");
        ChooseInput("a.txt");
    }
    bool May() {
        const auto consent = MayStart(setup, key, machine, view, [this] { return stopped; });
        EXPECT_EQ(consent && consent->leavesOut,
                  consent && view.answer == ConfirmationAnswer::YesLeavingOut);
        return consent.has_value();
    }
    void Refuses(const std::string& text, const std::string& title,
                 BoxIcon icon = BoxIcon::Exclamation) {
        user.Expect(Notice(text, title, icon));
        EXPECT_FALSE(May()) << text;
    }
    void Says(std::string Confirmation::*line, const std::string& text) {
        EXPECT_TRUE(May());
        EXPECT_EQ(view.asked.back().*line, text);
    }
    void Warns(const std::vector<std::string>& warnings) {
        EXPECT_TRUE(May());
        EXPECT_EQ(view.asked.back().warnings, warnings);
    }
    FakeConfirmation view;
    bool stopped = false;
};

TEST_F(Checks, PassOnceTheUserConfirms) {
    Says(&Confirmation::operation, "Confirm encryption operation using key with checksum 6304");
    EXPECT_EQ(view.asked[0].input, "Encrypting " + (folder / "a.txt") + " (1 file).");
    EXPECT_EQ(view.asked[0].output, "The output file will have the same name as the input file "
                                    "(so the input file will be overwritten).");
    EXPECT_EQ(view.asked[0].reminder, "");
    EXPECT_EQ(view.asked[0].question, "Perform this encryption operation?");
    view.answer = ConfirmationAnswer::No;
    EXPECT_FALSE(May());
}

TEST_F(Checks, RefuseAForbiddenFolderFromASetupFile) {
    setup.InputMode = InputSource::FilesInAFolder;
    setup.Folder = {"/usr/share/", "/usr/share/"};
    Refuses("A 'usr' folder cannot be selected.", "Perform the encryption", BoxIcon::Information);
    setup.OutputMode = OutputTarget::Nowhere;
    Refuses("A 'usr' folder cannot be selected.", "Check the encrypted files",
            BoxIcon::Information);
    setup.OutputMode = OutputTarget::OverwriteInput;
    setup.InputMode = InputSource::SingleFile;
    setup.Folder = {"/tmp/../" + config.Path(), ""};
    Refuses("A '" + std::filesystem::path(config.Path()).parent_path().filename().native() +
                "' folder cannot be selected.",
            "Perform the encryption", BoxIcon::Information);
}

TEST_F(Checks, DescribeADifferentOutput) {
    setup.Operation = Direction::Decrypt;
    folder.Write("a.txt", "ZR5\x01");
    ChooseOutput("b.txt");
    Says(&Confirmation::output, "The output file is specified as b.txt in the same folder.");
    EXPECT_EQ(view.asked.back().warnings, std::vector<std::string>{});
    EXPECT_EQ(view.asked.back().question, "Perform this decryption operation?");
    folder.Write("b.txt", "of an earlier run");
    Warns({"The output file exists already. It will be overwritten."});
    const TemporaryFolder elsewhere;
    setup.Folder[OutputSide] = elsewhere.Path();
    Says(&Confirmation::output, "The output file is specified as " + (elsewhere / "b.txt") + ".");
    setup.FileName[OutputSide] = "a.txt";
    Says(&Confirmation::output,
         "The output file will have the same name, in the folder " + elsewhere.Path() + ".");
}

TEST_F(Checks, RefuseAnOutputThatIsTheInputByWhateverName) {
    std::filesystem::create_hard_link(folder / "a.txt", folder / "other.txt");
    for (const char* name : {"a.txt", "other.txt"}) {
        ChooseOutput(name);
        Refuses("The output file is the same as the input file.", "Perform the encryption",
                BoxIcon::Information);
    }
    EXPECT_TRUE(view.asked.empty());
}

TEST_F(Checks, RefuseTheKeyfileOrACopyOfItOrTheProgramAsTheOutput) {
    machine.executablePath = folder.Write("program", "x");
    key.keyState = KeyState::Keyfile;
    key.keyfilePath = folder.Write("my.key", "changed since");
    folder.Write("copy", "abcdefghijklmnop\n");
    for (const auto& [name, what] : {std::pair{"my.key", "the current keyfile."},
                                     {"copy", "the current keyfile."},
                                     {"program", "this program."}}) {
        ChooseOutput(name);
        Refuses("The output file is " + std::string(what) + "\r\nChoose a different output file.",
                "Output file");
    }
    EXPECT_TRUE(view.asked.empty());
    key.keyState = KeyState::Keyboard;
    ChooseOutput("copy");
    EXPECT_TRUE(May());
}

TEST_F(Checks, AskForTheKeyBeforeTheOutputOfWhichACheckHasNone) {
    ChooseOutput("");
    key.keyState = KeyState::NoKey;
    setup.Operation = Direction::Decrypt;
    Refuses("Please specify the decryption key.", "Decryption key not specified", BoxIcon::None);
    key.keyState = KeyState::Keyboard;
    Refuses("Output file not specified.", "Output file", BoxIcon::Information);
    setup.OutputMode = OutputTarget::Nowhere;
    disk.freeBytes = 0;
    EXPECT_TRUE(May());
    EXPECT_TRUE(view.asked.empty());
}

TEST_F(Checks, CountTheFilesOfAFolderAgainstItsMaximum) {
    setup.InputMode = InputSource::FilesInAFolder;
    setup.MaxNumFiles = 10;
    for (int i = 0; i < 10; ++i)
        folder.Write(std::to_string(i) + ".odg", "abc");
    setup.FilePattern = "*.odg";
    Says(&Confirmation::input, "Encrypting *.odg in the folder " + folder.Path() + " (10 files).");
    folder.Write("11.odg", "abc");
    Refuses("There are at least 11 matching files\r\nin the input folder.\r\n"
            "This is greater than the maximum number \r\n"
            "of files allowed (10) in a single operation.",
            "Maximum number of files exceeded");
    const std::size_t asked = view.asked.size();
    user.onEvents = [&] {
        clock.now += std::chrono::milliseconds(300);
        if (user.isWorkShown) user.shownWork.back().stop();
    };
    EXPECT_FALSE(May()) << "the user stops the counting";
    EXPECT_EQ(user.shownWork.size(), 1U);
    EXPECT_NE(user.shownWork[0].text.find("\r\n2 files found in 1 folder"), std::string::npos);
    EXPECT_FALSE(user.isWorkShown);
    user.onEvents = [&] { stopped = true; };
    EXPECT_FALSE(May()) << "the program is to end";
    EXPECT_EQ(view.asked.size(), asked);
}

TEST_F(Checks, TellOfFilesThatAreEncryptedAlready) {
    const std::string again =
        " looks as if it were encrypted already. It would be encrypted a second time.";
    folder.Write("a.txt", std::string("ZR5\x01") + "rest");
    Warns({"This file" + again});
    EXPECT_EQ(view.asked.back().leaveOut, "") << "instead of the only one";
    setup.InputMode = InputSource::FilesInAFolder;
    folder.Write("b.txt",
                 "plain" + std::string(92, '.')); // what follows its beginning is no header
    folder.Write("empty", "");
    Warns({"1 of these files" + again});
    EXPECT_EQ(view.asked.back().leaveOut, "Leave out the files that are encrypted already");
    setup.Operation = Direction::Decrypt;
    Warns({"1 of these files does not look encrypted."});
    EXPECT_EQ(view.asked.back().leaveOut, "Leave out the files that are not encrypted");
    folder.Remove("empty");
    folder.Write("a.txt", "plain");
    Warns({"None of these files looks encrypted."});
    folder.Write("a.txt", std::string("ZR5\x01") + "rest");
    folder.Write("b.txt", "damaged beginning, ZR5\x01" + std::string(88, '.'));
    Warns({});
    EXPECT_EQ(view.asked.back().leaveOut, "");
    setup.Operation = Direction::Encrypt;
    Warns({"All of these files look as if they were encrypted already. They "
           "would be encrypted a second time."});
    disk.freeBytes = 0;
    view.answer = ConfirmationAnswer::YesLeavingOut;
    EXPECT_TRUE(May()) << "and need no room";
}

TEST_F(Checks, TellOfFilesThatStayAndOfDisksThatMayKeepOlderCopies) {
    const std::string copies = "Overwriting may leave older copies on this disk (btrfs).";
    disk.diskKinds[folder.Path()] = DiskKind::Btrfs;
    Warns({copies});
    folder.Write("run.EXE", std::string("ZR5\x01"));
    setup.InputMode = InputSource::FilesInAFolder;
    Warns({"1 of these files has an extension that is never encrypted in "
           "place. It will be left alone.",
           copies});
    EXPECT_EQ(view.asked.back().leaveOut, "") << "it is left alone anyway";
    setup.Operation = Direction::Decrypt;
    folder.Remove("a.txt");
    Warns({"This file has an extension that is never decrypted in place. It "
           "will be left alone."});
    setup.Operation = Direction::Encrypt;
    folder.Remove("run.EXE");
    disk.diskKinds.clear();
    std::filesystem::create_directory(folder / "sub");
    folder.Write("sub/a.txt", "on the same disk");
    disk.diskKinds[folder / "sub/"] = DiskKind::SolidState;
    setup.SubfolderAnswer = true;
    Warns({"Overwriting may leave older copies on this disk (solid-state)."});
    setup.InputMode = InputSource::SingleFile;
    setup.FileName[InputSide] = "sub/a.txt";
    ChooseOutput("b.txt");
    disk.diskKinds[folder.Path()] = DiskKind::Btrfs;
    Warns({});
}

TEST_F(Checks, AskAboutAntiVirusProgramsBeforeASingleFileIsEncrypted) {
    const auto question =
        Question("The file extension of the input file may cause any anti-virus software present "
                 "to issue a warning and may possibly halt program execution. "
                 "If any anti-virus software is present, it is recommended to disable it now."
                 "\r\n\r\nDo you wish to proceed with this operation?",
                 "Warning!", BoxIcon::Exclamation, Answer::No);
    folder.Write("TOOL.Exe", "abc");
    ChooseInput("TOOL.Exe");
    key.keyState = KeyState::NoKey;
    user.Expect(question, Answer::No);
    EXPECT_FALSE(May());
    key.keyState = KeyState::Keyboard;
    user.Expect(question, Answer::Yes);
    EXPECT_TRUE(May());
    setup.Operation = Direction::Decrypt;
    EXPECT_TRUE(May());
    setup.Operation = Direction::Encrypt;
    setup.InputMode = InputSource::FilesInAFolder;
    EXPECT_TRUE(May());
}

TEST_F(Checks, WantRoomForTheResultOnItsDriveOnceTheUserHasConfirmed) {
    const std::string drive = DriveOf(disk, folder.Path());
    constexpr std::uint64_t Kb = 1024;
    constexpr std::uint64_t Mb = Kb * Kb;
    const std::tuple<std::uint64_t, std::uint64_t, std::string> cases[] = {
        {5 * Kb + 1, 5 * Kb, "5 KB, but there is only 5 KB"},
        {5 * Kb, 5 * Kb - 512, ""}, // it fits: rounded to whole kilobytes
        {5 * Kb, 5 * Kb - 513, "5 KB, but there is only 4 KB"},
        {1024 * Kb, 1023 * Kb, "1 MB, but there is only 1023 KB"},
        {1537 * Kb, 1536 * Kb, "1.6 MB, but there is only 1.5 MB"},
        {2048 * Mb, 1 * Mb, "2,048 MB, but there is only 1 MB"}};
    for (const auto& [needed, free, amounts] : cases) {
        std::filesystem::resize_file(folder / "a.txt", needed);
        disk.freeBytes = free;
        if (!amounts.empty()) {
            user.Expect(Notice("Estimated space required on drive " + drive + " is " + amounts +
                                   " available.",
                               "Insufficient disk space", BoxIcon::Exclamation));
        }
        EXPECT_EQ(May(), amounts.empty()) << needed;
    }
    EXPECT_EQ(view.asked.size(), std::size(cases));

    disk.freeBytes = std::optional<std::uint64_t>{};
    setup.OutputMode = OutputTarget::SeparateOutput;
    setup.Folder[OutputSide] = "/proc/vanished/";
    user.Expect(
        Notice("Error when attempting to access drive /proc", "Error", BoxIcon::Exclamation));
    EXPECT_FALSE(May());
    setup.OutputMode = OutputTarget::OverwriteInput; // a reliability test: two copies
    setup.InputMode = InputSource::FilesInAFolder;
    setup.FilePattern = "*.tst";
    std::filesystem::create_directory(folder / "zr5test");
    folder.Write("zr5test/a.tst", std::string(3 * Kb, 'x'));
    setup.Folder[InputSide] = folder / "zr5test/";
    disk.freeBytes = 5 * Kb;
    user.Expect("Insufficient disk space", "Estimated space required on drive " + drive +
                                               " is 6 KB, but there is only 5 KB available.");
    EXPECT_FALSE(May());
    EXPECT_EQ(DriveOf(disk, "D:\\out\\"), "D:");
    EXPECT_EQ(DriveOf(disk, "/"), "/");
    EXPECT_EQ(DriveOf(disk, "/proc/self/"), "/proc");
}

TEST_F(Checks, RefuseFilesThatAreAllEmptyButLeaveAVanishedOneToTheReport) {
    folder.Write("a.txt", "");
    Refuses("Total input filesize is 0 bytes.", "Error");
    setup.InputMode = InputSource::FilesInAFolder;
    folder.Write("b.txt", "");
    Refuses("Total input filesize is 0 bytes.", "Error");
    folder.Write("b.txt", "x");
    EXPECT_TRUE(May());
    setup.InputMode = InputSource::SingleFile;
    folder.Remove("a.txt");
    EXPECT_TRUE(May());
}

TEST_F(Checks, SayWhenThereIsNothingToDo) {
    kit.texts[51] = "none in subfolders";
    kit.texts[52] = "none";
    setup.InputMode = InputSource::FilesInAFolder;
    setup.FilePattern = "*.nothing";
    Refuses("none", "Nothing to do");
    setup.SubfolderAnswer = true;
    Refuses("none in subfolders", "Nothing to do");
    setup.SubfolderAnswer = false;
    setup.FilePattern = "";
    folder.Remove("a.txt");
    Refuses("The input folder is empty.", "Nothing to do");
    setup.Folder[InputSide] += "gone/";
    Refuses("Error when attempting to count files in " + setup.Folder[InputSide] + ".", "Error");
}

TEST(PurgeWarningRules, HoldForPlaintextOfSensitiveTypesUntilSilencedForAFolder) {
    OperationSetup setup;
    for (const bool isFolder : {false, true}) {
        setup.InputMode = isFolder ? InputSource::FilesInAFolder : InputSource::SingleFile;
        PurgeWarning warning(setup);
        EXPECT_FALSE(warning.IsDueFor("/d/tune.flac"));
        EXPECT_EQ(warning.OffersDontShowAgain(), isFolder);
        warning.Closed(false);
        EXPECT_TRUE(warning.IsDueFor("/d/Letter.DOCX"));
        warning.Closed(true);
        EXPECT_EQ(warning.IsDueFor("a.txt"), !isFolder);
    }
    setup.Operation = Direction::Decrypt;
    EXPECT_FALSE(PurgeWarning(setup).IsDueFor("/d/Letter.DOCX"));
}

} // namespace
} // namespace zr5::test
