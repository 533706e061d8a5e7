#include "operation/file_ops.h"

#include "operation/extension_lists.h"
#include "operation/noted_output.h"
#include "util/paths.h"

namespace zr5 {

std::int16_t CheckProtectedFile(const OperationContext& operation, const std::string& path) {
    FileSystem& fileSystem = operation.machine.fileSystem;
    if (SameFile(fileSystem, path, operation.machine.executablePath)) return outcome::IsExecutable;
    if (operation.key.keyState == key_state::Keyfile &&
        SameFile(fileSystem, path, operation.key.keyfilePath)) {
        return outcome::IsKeyfile;
    }
    return IsInPlaceExcludedExtension(ExtensionOf(path)) ? outcome::IsExcludedType
                                                         : std::int16_t{0};
}

std::int16_t EncryptOrDecryptFile(const OperationContext& operation, bool inPlace,
                                  const std::string& inputPath, const std::string& outputPath) {
    if (inPlace) {
        const std::int16_t refused = CheckProtectedFile(operation, inputPath);
        if (refused != 0) return refused;
    }
    CipherEngine& engine = operation.machine.engine;
    const bool encrypts = operation.setup.Operation == Function::Encrypt;
    const auto info = operation.machine.fileSystem.Info(inputPath);
    engine.operation_initialization(operation.key.keyText.text(),
                                    encrypts ? EngineEncrypt : EngineDecrypt,
                                    info ? info->lengthBytes : 0, 0);
    const std::int32_t code = encrypts ? engine.encrypt_file(inputPath, outputPath)
                                       : engine.decrypt_file(inputPath, outputPath);
    operation.machine.user.ProcessEvents();
    return static_cast<std::int16_t>(code);
}

FileResult ProcessToOther(const OperationContext& operation, const std::string& inputPath,
                          const std::string& outputPath) {
    JournalRecord record;
    record.step = JournalRecord::Step::WritingElsewhere;
    record.encrypts = operation.setup.Operation == Function::Encrypt;
    record.originalPath = inputPath;
    record.resultPath = outputPath;
    if (const auto input = operation.machine.fileSystem.Info(inputPath)) {
        record.original = MarkOf(*input);
    }
    NotedOutput output(operation, std::move(record));
    const std::int16_t code = EncryptOrDecryptFile(operation, false, inputPath, outputPath);
    return output.Ended({code, outputPath});
}

} // namespace zr5
