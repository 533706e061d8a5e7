#include "support/known_answers.h"

#include "keys/classification.h"
#include "keys/normalise.h"
#include "keys/typed_key.h"
#include "libs/cipher/md5.h"
#include "libs/cipher/zr5_engine.h"
#include "libs/cipher/zr5_format.h"
#include "libs/system/clock.h"
#include "libs/system/random.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace zr5::test {
namespace {

/// The salts are known by their lengths; everything else is a name of a temporary file.
class KnownSalts final : public RandomSource {
  public:
    /// The file salt is the name, filled up with dots.
    void SetFile(std::string_view name) { fileSalt_ = name; }
    void Fill(std::span<std::byte> into) override {
        std::ranges::fill(into, std::byte{'.'});
        const std::string_view text = into.size() == RunSaltBytes ? "zr5 known answer" : fileSalt_;
        std::ranges::copy(std::as_bytes(std::span(text)).first(std::min(text.size(), into.size())),
                          into.begin());
    }

  private:
    std::string_view fileSalt_;
};

/// Bytes of every kind, a NUL among them as the 21st.
std::string KnownKeyfile() {
    std::string bytes;
    for (unsigned i = 0; i < KeyfileBytes; ++i)
        bytes += static_cast<char>((37 * i + 28) % 256);
    return bytes;
}

class Sealer {
  public:
    Sealer() {
        if (engine_->allocate_buffers() == 0) throw std::runtime_error("no engine");
    }
    std::string Seal(std::string_view name, std::string_view keyName, std::size_t plainBytes) {
        salts_.SetFile(name);
        folder_.Write("plain", CountedLines(plainBytes));
        engine_->operation_initialization(KnownKey(keyName).text(), EngineEncrypt, plainBytes, 0);
        if (engine_->encrypt_file(folder_ / "plain", folder_ / "sealed") != engine_code::Success)
            throw std::runtime_error("not encrypted");
        return folder_.Read("sealed");
    }

  private:
    TemporaryFolder folder_;
    std::unique_ptr<FileSystem> system_ = MakeSystemFileSystem();
    SystemClock clock_;
    KnownSalts salts_;
    std::unique_ptr<CipherEngine> engine_ = MakeCipherEngine(*system_, clock_, salts_);
};

std::string Flipped(std::string bytes, std::size_t at) {
    bytes.at(at) = static_cast<char>(bytes[at] ^ 1);
    return bytes;
}

std::string Block(const std::string& sealed, std::size_t number) {
    return sealed.substr(HeaderBytes + number * SealedBlockBytes, SealedBlockBytes);
}

} // namespace

std::string CountedLines(std::size_t bytes) {
    std::string lines;
    for (int i = 1; lines.size() < bytes; ++i) {
        lines += std::to_string(i);
        lines += '\n';
    }
    lines.resize(bytes);
    return lines;
}

std::string Md5Text(std::string_view bytes) {
    std::string text;
    for (const unsigned byte : MD5Digest(bytes)) {
        text += "0123456789abcdef"[byte >> 4U];
        text += "0123456789abcdef"[byte & 15U];
    }
    return text;
}

SecretBytes KnownKey(std::string_view name) {
    if (name == "keyfile") {
        SecretBytes bytes = SecretBytes::CopyOf(KnownKeyfile());
        SubstituteInnerNuls(bytes);
        return NormaliseKey(bytes.text());
    }
    if (name == "typed") return NormaliseKey(TypedKeyBytes(u"Grüße aus Köln, 2026!")->text());
    if (name == "other") return NormaliseKey(TypedKeyBytes(u"Grüße aus Köln, 2027!")->text());
    throw std::invalid_argument("no such key");
}

std::map<std::string, std::string> MakeKnownFiles() {
    Sealer sealer;
    std::map<std::string, std::string> files;
    for (const std::size_t length : {1U, 15U, 16U, 65'535U, 65'536U, 65'537U, 131'073U}) {
        const std::string name = std::to_string(length);
        files[name + ".zr5"] = sealer.Seal(name, "typed", length);
    }
    files["keyfile.zr5"] = sealer.Seal("keyfile", "keyfile", 1000);
    files["keyfile.key"] = KnownKeyfile();

    const std::string small = files["16.zr5"];
    const std::string two = files["65537.zr5"];
    const std::string three = files["131073.zr5"];
    files["damaged-run-salt.zr5"] = Flipped(small, RunSaltAt);
    files["damaged-file-salt.zr5"] = Flipped(small, FileSaltAt);
    files["damaged-header-tag.zr5"] = Flipped(small, HeaderBytes - 1);
    files["damaged-tag.zr5"] = Flipped(small, small.size() - 1);
    files["damaged-block.zr5"] = Flipped(two, HeaderBytes + 1000);
    files["cut-in-header.zr5"] = small.substr(0, HeaderBytes - 1);
    files["cut-in-tag.zr5"] = small.substr(0, small.size() - 1);
    files["cut-after-block.zr5"] = two.substr(0, HeaderBytes + SealedBlockBytes);
    files["extended-short-block.zr5"] = small + "\n";
    files["extended-whole-block.zr5"] = files["65536.zr5"] + "more\n";
    files["swapped.zr5"] =
        three.substr(0, HeaderBytes) + Block(three, 1) + Block(three, 0) + Block(three, 2);
    files["spliced.zr5"] = two.substr(0, HeaderBytes) + Block(three, 0) + Block(two, 1);
    files["header-of-another.zr5"] = files["15.zr5"].substr(0, HeaderBytes) + Block(small, 0);
    files["version-0.zr5"] = Flipped(small, Magic.size() - 1);
    files["version-2.zr5"] = "ZR5\x02" + small.substr(Magic.size());
    files["foreign.zr5"] = CountedLines(500);
    files["empty.zr5"] = "";
    return files;
}

} // namespace zr5::test
