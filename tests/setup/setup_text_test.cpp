#include "setup/setup_text.h"

#include <gtest/gtest.h>
#include <sstream>
#include <vector>

namespace zr5 {
namespace {

/// A file as it is on disk; `change` writes over one of its lines, counted from 1.
class FileText {
  public:
    FileText() {
        std::istringstream text("15.00\n0\n-1\n-1\n0\n0\n-1\n0\n-1\n"
                                "\"/in, and more/\"\n\"/in, and more/\"\n\"a.txt\"\n\"a.txt\"\n"
                                "\"/out/\"\n\"/out/\"\n\"b.txt\"\n\"b.txt\"\n\"*.doc\"\n\"50\"\n");
        for (std::string line; std::getline(text, line);)
            lines_.push_back(line);
    }
    FileText& Change(std::size_t line, const std::string& text) {
        lines_.at(line - 1) = text;
        return *this;
    }
    FileText& Resize(std::size_t count) {
        lines_.resize(count, "\"more\"");
        return *this;
    }
    [[nodiscard]] std::string Text(const std::string& lineEnd = "\r\n") const {
        std::string text;
        for (const std::string& line : lines_)
            text.append(line).append(lineEnd);
        return text;
    }
    [[nodiscard]] SetupReading Read() const { return ReadSetupText(Text()); }

  private:
    std::vector<std::string> lines_;
};

OperationSetup SetupOfFile() {
    OperationSetup setup;
    setup.Operation = Function::Decrypt;
    setup.SubfolderAnswer = false;
    setup.OutputMode = OutputTarget::SeparateOutput;
    setup.Folder = setup.FolderCaption = {"/in, and more/", "/out/"};
    setup.FileName = setup.FilesCaption = {"a.txt", "b.txt"};
    setup.FilePattern = "*.doc";
    setup.MaxNumFiles = 50;
    return setup;
}

TEST(SetupText, HasItsNineteenLines) {
    EXPECT_EQ(WriteSetupText(SetupOfFile()), FileText().Text());
    EXPECT_EQ(WriteSetupText(OperationSetup{}),
              "15.00\r\n-1\r\n0\r\n-1\r\n0\r\n0\r\n0\r\n-1\r\n0\r\n\"\"\r\n\"\"\r\n\"\"\r\n\"\"\r\n"
              "\"\"\r\n\"\"\r\n\"\"\r\n\"\"\r\n\"\"\r\n\"20\"\r\n");
    for (const char* name : {"a\"b", "a\rb", "a\nb"}) {
        OperationSetup setup = SetupOfFile();
        setup.FileName[Output] = name;
        EXPECT_EQ(WriteSetupText(setup), std::nullopt) << name;
    }
    OperationSetup noText = SetupOfFile();
    noText.Folder[Input] = "\\\\host\\\xFF\\";
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
    const auto windows = FileText().Change(10, R"("C:\xfer\x41\")").Read();
    EXPECT_EQ(windows.setup.Folder[Input], "C:\\xfer\\x41\\");
}

TEST(SetupText, IsReadHoweverItWasWritten) {
    const std::string expected = WriteSetupText(SetupOfFile()).value();
    const std::string text = FileText().Text();
    const std::pair<const char*, std::string> cases[] = {
        {"CR LF", text},
        {"LF", FileText().Text("\n")},
        {"CR", FileText().Text("\r")},
        {"a mark at the start", "\xEF\xBB\xBF" + text},
        {"no line end at the end", text.substr(0, text.size() - 2)},
        {"20 lines", FileText().Resize(20).Text()},
        {"binary after the end", text + std::string("\0\xFF\"", 3)},
        {"blanks",
         FileText().Change(2, "  0 ").Change(3, "\t-1\t").Change(19, " \" 50 \"  ").Text()},
        {"other numbers", FileText().Change(3, "7").Change(4, "32767").Text()},
        {"unquoted", FileText().Change(12, " a.txt ").Change(1, "\"9.00\"").Text()},
        {"commas", "15.00,0,-1,-1,0,0,-1,0,-1,\"/in, and more/\",\"/in, and more/\",a.txt , a.txt,"
                   "/out/,/out/,b.txt,b.txt,*.doc,50"},
    };
    for (const auto& [name, content] : cases) {
        const SetupReading reading = ReadSetupText(content);
        EXPECT_TRUE(reading.complete) << name;
        EXPECT_EQ(WriteSetupText(reading.setup), expected) << name;
    }
    const auto old = FileText().Change(12, "\"caf\xE9\"").Change(13, "\"\x80uro\"").Read();
    EXPECT_EQ(old.setup.FileName[Input], "caf\xC3\xA9") << "code page 1252";
    EXPECT_EQ(old.setup.FilesCaption[Input], "\xE2\x82\xACuro");
}

TEST(SetupText, ThatIsMalformedGivesWhatStandsBeforeTheFault) {
    for (const std::string& broken :
         {std::string(), std::string("\r\n"), FileText().Resize(18).Text(),
          FileText().Change(2, "yes").Text(), FileText().Change(2, "").Text(),
          FileText().Change(3, "32768").Text(), FileText().Change(3, "-1 -1").Text(),
          FileText().Change(12, "\"a\"b\"").Text(), FileText().Change(12, "a\"b").Text(),
          FileText().Change(12, "\"open").Text(), FileText().Change(12, "\"a\" b").Text(),
          FileText().Change(12, std::string("\"a\0b\"", 5)).Text(),
          FileText().Change(12, "\"a\\x00b\"").Text(), FileText().Change(10, "\"/\\x00/\"").Text(),
          std::string(5000, '\xFF'), std::string(5000, '\0')}) {
        EXPECT_FALSE(ReadSetupText(broken).complete) << broken.substr(0, 300);
    }
    FileText folder;
    folder.Change(4, "0").Change(5, "-1").Change(12, "\"*.txt\"");
    EXPECT_EQ(folder.Resize(17).Read().setup.EffectivePattern(), "*.txt") << "never all files";
    EXPECT_EQ(folder.Resize(11).Read().setup.Folder[Input], "");
    const OperationSetup part = FileText().Resize(12).Read().setup;
    EXPECT_EQ(part.Operation, Function::Decrypt);
    EXPECT_EQ(part.FilePath(Input), "/in, and more/a.txt");
    EXPECT_EQ(part.FolderCaption[Input], "");
    EXPECT_EQ(part.Folder[Output], "");
    EXPECT_EQ(part.MaxNumFiles, 20);
}

TEST(SetupText, LetsTheLaterOptionOfAPairDecide) {
    for (const char* value : {"-1", "0"}) {
        FileText file;
        for (std::size_t line = 2; line <= 9; ++line)
            file.Change(line, value);
        const bool later = std::string_view(value) == "-1";
        if (later) file.Change(4, "-1").Change(5, "0"); // a folder with separate output is refused
        const SetupReading reading = file.Read();
        EXPECT_TRUE(reading.complete);
        EXPECT_EQ(reading.setup.Operation, later ? Function::Decrypt : Function::Encrypt);
        EXPECT_EQ(reading.setup.InputMode, InputSource::SingleFile);
        EXPECT_EQ(reading.setup.SubfolderAnswer, false);
        EXPECT_EQ(reading.setup.OutputMode,
                  later ? OutputTarget::SeparateOutput : OutputTarget::OverwriteInput);
    }
    EXPECT_EQ(FileText().Change(5, "-1").Read().setup.InputMode, InputSource::FilesInAFolder);
    EXPECT_FALSE(FileText().Change(5, "-1").Read().complete);
}

TEST(SetupText, ReplacesWhatNoSetupMayHave) {
    for (const auto& [text, value] : {std::pair{"4", 100}, {"10001", 100}, {"abc", 100}}) {
        const std::string line = "\"" + std::string(text) + "\"";
        EXPECT_EQ(FileText().Change(19, line).Read().setup.MaxNumFiles, value) << text;
    }
    EXPECT_EQ(FileText().Change(18, "\"a<b\"").Read().setup.FilePattern, "");
}

TEST(SetupText, NamesTheFilesOfAFolderByThePattern) {
    const auto read = [](const char* pattern) {
        return FileText()
            .Change(5, "-1")
            .Change(8, "-1")
            .Change(9, "0")
            .Change(10, "/in")
            .Change(11, "/in")
            .Change(12, "\"\"")
            .Change(18, pattern)
            .Read();
    };
    EXPECT_TRUE(read("*.doc").complete);
    const OperationSetup setup = read("*.doc").setup;
    EXPECT_EQ(setup.Folder[Input], "/in/");
    EXPECT_EQ(setup.FolderCaption[Input], "/in/");
    EXPECT_EQ(setup.FileName, (std::array<std::string, 2>{"*.doc", "*.doc"}));
    EXPECT_EQ(setup.FilesCaption[Input], "All files matching: *.doc");
    EXPECT_EQ(read("").setup.FileName[Input], "*.*");
    EXPECT_EQ(read("").setup.FilesCaption[Input], "All files");
}

} // namespace
} // namespace zr5
