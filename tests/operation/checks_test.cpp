#include "operation/checks.h"

#include "operation/operation_fixture.h"

#include <filesystem>

namespace zr5::test {
namespace {

class FakeConfirmation : public ConfirmationView {
  public:
    bool answer = true;
    std::vector<Confirmation> asked;
    bool Confirm(const Confirmation& confirmation) override {
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
        return MayStart(setup, key, machine, view, [this] { return stopped; });
    }
    FakeConfirmation view;
    bool stopped = false;
};

TEST_F(Checks, PassOnceTheUserConfirms) {
    EXPECT_TRUE(May());
    view.answer = false;
    EXPECT_FALSE(May());
    ASSERT_EQ(view.asked.size(), 2U);
    EXPECT_EQ(view.asked[0].operation, "Confirm encryption operation using key with checksum 6304");
    EXPECT_EQ(view.asked[0].input, "Encrypting " + (folder / "a.txt") + " (1 file).");
    EXPECT_EQ(view.asked[0].output, "The output file will have the same name as the input file "
                                    "(so the input file will be overwritten).");
    EXPECT_EQ(view.asked[0].reminder, "");
    EXPECT_EQ(view.asked[0].question, "Perform this encryption operation?");
}

TEST_F(Checks, DescribeADifferentOutput) {
    setup.Operation = Function::Decrypt;
    ChooseOutput("b.txt");
    EXPECT_TRUE(May());
    EXPECT_EQ(view.asked.back().output,
              "The output file is specified as b.txt in the same folder.");
    setup.Folder[Output] = "/elsewhere/";
    EXPECT_TRUE(May());
    EXPECT_EQ(view.asked.back().output, "The output file is specified as /elsewhere/b.txt.");
    setup.FileName[Output] = "a.txt";
    EXPECT_TRUE(May());
    EXPECT_EQ(view.asked.back().output, "The output file will have the same name.");
    EXPECT_EQ(view.asked.back().question, "Perform this decryption operation?");
}

TEST_F(Checks, RefuseAnOutputThatIsTheInputByWhateverName) {
    std::filesystem::create_hard_link(folder / "a.txt", folder / "other.txt");
    for (const char* name : {"a.txt", "other.txt"}) {
        ChooseOutput(name);
        user.Expect(Notice("The output file is the same as the input file.",
                           "Perform the encryption", BoxIcon::Information));
        EXPECT_FALSE(May());
    }
    EXPECT_TRUE(view.asked.empty());
}

TEST_F(Checks, AskForTheKeyBeforeTheOutput) {
    ChooseOutput("");
    key.keyState = key_state::NoKey;
    setup.Operation = Function::Decrypt;
    user.Expect(Notice("Please specify the decryption key.", "Decryption key not specified"));
    EXPECT_FALSE(May());
    key.keyState = key_state::Keyboard;
    user.Expect(Notice("Output file not specified.", "Output file"));
    EXPECT_FALSE(May());
    EXPECT_TRUE(view.asked.empty());
}

TEST_F(Checks, CountTheFilesOfAFolderAgainstItsMaximum) {
    setup.InputMode = InputSource::FilesInAFolder;
    setup.MaxNumFiles = 10;
    for (int i = 0; i < 10; ++i) {
        folder.Write(std::to_string(i) + ".odg", "abc");
    }
    setup.FilePattern = "*.odg";
    EXPECT_TRUE(May());
    EXPECT_EQ(view.asked.back().input,
              "Encrypting *.odg in the folder " + folder.Path() + " (10 files).");
    folder.Write("11.odg", "abc");
    user.Expect(Notice("There are at least 11 matching files\r\nin the input folder.\r\n"
                       "This is greater than the maximum number \r\n"
                       "of files allowed (10) in a single operation.",
                       "Maximum number of files exceeded", BoxIcon::Exclamation));
    EXPECT_FALSE(May());
}

TEST_F(Checks, TellOfFilesThatAreEncryptedAlready) {
    folder.Write("a.txt", std::string("ZR5\x01") + "rest");
    EXPECT_TRUE(May());
    EXPECT_EQ(view.asked.back().warning, "This file looks as if it were encrypted already. "
                                         "It would be encrypted a second time.");
    setup.InputMode = InputSource::FilesInAFolder;
    folder.Write("b.txt", "plain");
    EXPECT_TRUE(May());
    EXPECT_EQ(view.asked.back().warning, "1 of these files looks as if it were encrypted already. "
                                         "It would be encrypted a second time.");
    setup.Operation = Function::Decrypt;
    EXPECT_TRUE(May());
    EXPECT_EQ(view.asked.back().warning, "");
}

TEST_F(Checks, AskNothingOnceTheUserStopsTheCounting) {
    setup.InputMode = InputSource::FilesInAFolder;
    user.onEvents = [&] { stopped = true; };
    EXPECT_FALSE(May());
    EXPECT_TRUE(view.asked.empty());
}

TEST_F(Checks, SayWhenThereIsNothingToDo) {
    kit.texts[51] = "none in subfolders";
    kit.texts[52] = "none";
    setup.InputMode = InputSource::FilesInAFolder;
    const auto expect = [&](const char* text) {
        user.Expect(Notice(text, "Nothing to do", BoxIcon::Exclamation));
        EXPECT_FALSE(May());
    };
    setup.FilePattern = "*.nothing";
    expect("none");
    setup.SubfolderAnswer = true;
    expect("none in subfolders");
    setup.SubfolderAnswer = false;
    setup.FilePattern = "";
    folder.Remove("a.txt");
    expect("The input folder is empty.");
}

TEST(PurgeWarningRules, HoldForPlaintextOfSensitiveTypesUntilSilencedForAFolder) {
    OperationSetup setup;
    PurgeWarning single(setup);
    EXPECT_TRUE(single.IsDueFor("/d/Letter.DOCX"));
    EXPECT_FALSE(single.IsDueFor("/d/tune.flac"));
    EXPECT_FALSE(single.OffersDontShowAgain());
    single.Closed(true);
    EXPECT_TRUE(single.IsDueFor("a.txt"));
    setup.InputMode = InputSource::FilesInAFolder;
    PurgeWarning several(setup);
    EXPECT_TRUE(several.OffersDontShowAgain());
    several.Closed(false);
    EXPECT_TRUE(several.IsDueFor("a.txt"));
    several.Closed(true);
    EXPECT_FALSE(several.IsDueFor("b.txt"));
    setup.Operation = Function::Decrypt;
    EXPECT_FALSE(PurgeWarning(setup).IsDueFor("/d/Letter.DOCX"));
}

} // namespace
} // namespace zr5::test
