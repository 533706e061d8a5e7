#include "setup/setup_text.h"

#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace zr5 {
namespace {

using Changes = std::map<std::size_t, std::string>;

/// A file as it is on disk, but for some of its lines, counted from 1.
std::string FileText(const Changes& changes = {}, std::size_t count = 19,
                     const std::string& lineEnd = "\r\n") {
    std::istringstream lines("15.00\n0\n-1\n-1\n0\n0\n-1\n0\n-1\n"
                             "\"/in, and more/\"\n\"/in, and more/\"\n\"a.txt\"\n\"a.txt\"\n"
                             "\"/out/\"\n\"/out/\"\n\"b.txt\"\n\"b.txt\"\n\"*.doc\"\n\"50\"\n");
    std::string text;
    std::string line;
    for (std::size_t number = 1; number <= count; ++number) {
        if (!std::getline(lines, line)) line = "\"more\"";
        text += (changes.contains(number) ? changes.at(number) : line) + lineEnd;
    }
    return text;
}

SetupReading ReadFile(const Changes& changes, std::size_t count = 19) {
    return ReadSetupText(FileText(changes, count));
}

OperationSetup SetupOfFile() {
    OperationSetup setup;
    setup.Operation = Direction::Decrypt;
    setup.SubfolderAnswer = false;
    setup.OutputMode = OutputTarget::SeparateOutput;
    setup.Folder = setup.FolderCaption = {"/in, and more/", "/out/"};
    setup.FileName = setup.FilesCaption = {"a.txt", "b.txt"};
    setup.FilePattern = "*.doc";
    setup.MaxNumFiles = 50;
    return setup;
}

TEST(SetupText, HasItsNineteenLines) {
    EXPECT_EQ(WriteSetupText(SetupOfFile()), FileText());
    EXPECT_EQ(WriteSetupText(OperationSetup{}),
              "15.00\r\n-1\r\n0\r\n-1\r\n0\r\n0\r\n0\r\n-1\r\n0\r\n\"\"\r\n\"\"\r\n\"\"\r\n\"\"\r\n"
              "\"\"\r\n\"\"\r\n\"\"\r\n\"\"\r\n\"\"\r\n\"20\"\r\n");
    for (const char* name : {"a\"b", "a\rb", "a\nb"}) {
        OperationSetup setup = SetupOfFile();
        setup.FileName[OutputSide] = name;
        EXPECT_EQ(WriteSetupText(setup), std::nullopt) << name;
    }
    OperationSetup noText = SetupOfFile();
    noText.Folder[InputSide] = "\\\\host\\\xFF\\";
    EXPECT_EQ(WriteSetupText(noText), std::nullopt);
}

TEST(SetupText, GivesBackEveryName) {
    for (const std::string name : {"caf\xC3\xA9", "caf\xE9", "\\xE9", "\\x\xE9", "\\\\xE9\xC3",
                                   "a, b ", " ", "\x01\t", "C:\\xdir", "\xEF\xBB\xBF", "it's"}) {
        OperationSetup setup = SetupOfFile();
        setup.FileName = {name, name + "2"};
        setup.Folder = {"/" + name + "/", "/in/"};
        const SetupReading reading = ReadSetupText(WriteSetupText(setup).value());
        EXPECT_TRUE(reading.complete) << name;
        EXPECT_EQ(reading.setup.Folder, setup.Folder);
        EXPECT_EQ(reading.setup.FileName, setup.FileName);
    }
    EXPECT_EQ(ReadFile({{10, R"("C:\xfer\x41\")"}}).setup.Folder[InputSide], "C:\\xfer\\x41\\");
}

TEST(SetupText, IsReadHoweverItWasWritten) {
    const std::string expected = WriteSetupText(SetupOfFile()).value();
    const std::string text = FileText();
    const std::pair<const char*, std::string> cases[] = {
        {"CR LF", text},
        {"LF", FileText({}, 19, "\n")},
        {"CR", FileText({}, 19, "\r")},
        {"a mark at the start", "\xEF\xBB\xBF" + text},
        {"no line end at the end", text.substr(0, text.size() - 2)},
        {"20 lines", FileText({}, 20)},
        {"binary after the end", text + std::string("\0\xFF\"", 3)},
        {"blanks", FileText({{2, "  0 "}, {3, "\t-1\t"}, {19, " \" 50 \"  "}})},
        {"other numbers", FileText({{3, "7"}, {4, "32767"}})},
        {"unquoted", FileText({{12, " a.txt "}, {1, "\"9.00\""}})},
        {"commas", "15.00,0,-1,-1,0,0,-1,0,-1,\"/in, and more/\",\"/in, and more/\",a.txt , a.txt,"
                   "/out/,/out/,b.txt,b.txt,*.doc,50"},
    };
    for (const auto& [name, content] : cases) {
        const SetupReading reading = ReadSetupText(content);
        EXPECT_TRUE(reading.complete) << name;
        EXPECT_EQ(WriteSetupText(reading.setup), expected) << name;
    }
    const auto old = ReadFile({{12, "\"caf\xE9\""}, {13, "\"\x80uro\""}});
    EXPECT_EQ(old.setup.FileName[InputSide], "caf\xC3\xA9") << "code page 1252";
    EXPECT_EQ(old.setup.FilesCaption[InputSide], "\xE2\x82\xACuro");
}

TEST(SetupText, ThatIsMalformedGivesWhatStandsBeforeTheFault) {
    for (const auto& [line, text] : {std::pair{2U, std::string("yes")},
                                     {2U, ""},
                                     {3U, "32768"},
                                     {3U, "-1 -1"},
                                     {12U, "\"a\"b\""},
                                     {12U, "a\"b"},
                                     {12U, "\"open"},
                                     {12U, "\"a\" b"},
                                     {12U, std::string("\"a\0b\"", 5)},
                                     {12U, "\"a\\x00b\""},
                                     {10U, "\"/\\x00/\""},
                                     {10U, "\"in/\""},
                                     {10U, "\"C:in\\\""},
                                     {12U, "\"..\""},
                                     {16U, "\"../v/x.odg\""}})
        EXPECT_FALSE(ReadFile({{line, text}}).complete) << text;
    for (const std::string& broken : {std::string(), std::string("\r\n"), FileText({}, 18),
                                      std::string(5000, '\xFF'), std::string(5000, '\0')})
        EXPECT_FALSE(ReadSetupText(broken).complete);
    const Changes folder{{4, "0"}, {5, "-1"}, {12, "\"*.txt\""}};
    EXPECT_EQ(ReadFile(folder, 17).setup.EffectivePattern(), "*.txt") << "never all files";
    EXPECT_EQ(ReadFile(folder, 11).setup.Folder[InputSide], "");
    const OperationSetup nameOnly = ReadFile({{10, "\"\""}}).setup;
    EXPECT_EQ(nameOnly.FileName[InputSide] + nameOnly.FilesCaption[InputSide], "");
    const OperationSetup part = ReadFile({}, 12).setup;
    EXPECT_EQ(part.Operation, Direction::Decrypt);
    EXPECT_EQ(part.FilePath(InputSide), "/in, and more/a.txt");
    EXPECT_EQ(part.FolderCaption[InputSide], "");
    EXPECT_EQ(part.Folder[OutputSide], "");
    EXPECT_EQ(part.MaxNumFiles, 20);
}

TEST(SetupText, LetsTheLaterOptionOfAPairDecide) {
    for (const char* value : {"-1", "0"}) {
        Changes pairs;
        for (std::size_t line = 2; line <= 9; ++line)
            pairs[line] = value;
        const bool later = std::string_view(value) == "-1";
        if (later) pairs[5] = "0"; // a folder with separate output is refused
        const SetupReading reading = ReadFile(pairs);
        EXPECT_TRUE(reading.complete);
        EXPECT_EQ(reading.setup.Operation, later ? Direction::Decrypt : Direction::Encrypt);
        EXPECT_EQ(reading.setup.InputMode, InputSource::SingleFile);
        EXPECT_EQ(reading.setup.SubfolderAnswer, false);
        EXPECT_EQ(reading.setup.OutputMode,
                  later ? OutputTarget::SeparateOutput : OutputTarget::OverwriteInput);
    }
    const SetupReading refused = ReadFile({{5, "-1"}});
    EXPECT_EQ(refused.setup.InputMode, InputSource::FilesInAFolder);
    EXPECT_FALSE(refused.complete);
}

TEST(SetupText, ReplacesWhatNoSetupMayHave) {
    for (const char* text : {"4", "10001", "abc"})
        EXPECT_EQ(ReadFile({{19, text}}).setup.MaxNumFiles, 100) << text;
    EXPECT_EQ(ReadFile({{18, "\"a<b\""}}).setup.FilePattern, "");
}

TEST(SetupText, NamesTheFilesOfAFolderByThePattern) {
    const auto read = [](const char* pattern) {
        Changes folder{{5, "-1"}, {8, "-1"}, {9, "0"}, {10, "/in"}, {11, "/in"}, {12, "\"\""}};
        folder[18] = pattern;
        return ReadFile(folder);
    };
    EXPECT_TRUE(read("*.doc").complete);
    const OperationSetup setup = read("*.doc").setup;
    EXPECT_EQ(setup.Folder[InputSide], "/in/");
    EXPECT_EQ(setup.FolderCaption[InputSide], "/in/");
    EXPECT_EQ(setup.FileName, (std::array<std::string, 2>{"*.doc", "*.doc"}));
    EXPECT_EQ(setup.FilesCaption[InputSide], "All files matching: *.doc");
    EXPECT_EQ(read("").setup.FileName[InputSide], "*.*");
    EXPECT_EQ(read("").setup.FilesCaption[InputSide], "All files");
}

} // namespace
} // namespace zr5
