#include "libs/cipher/jobs.h"
#include "libs/cipher/sealed_reader.h"
#include "libs/system/paths.h"

namespace zr5 {
namespace {

/// Where the only thing wrong is the file's last block, its end is what is wrong: a file cut off
/// or lengthened inside a block looks just so.
EngineResult ResultOf(const BlockDamage& damage) {
    if (damage.endIsWrong || (damage.lastIsDamaged && damage.blocks == 1)) {
        return EngineResult::CorruptEndPartial;
    }
    return damage.blocks == 0 ? EngineResult::Success : DamagedBlocks(damage.blocks);
}

/// Writes every piece; what ended the work early, if anything did.
EngineResult WriteAll(JobContext& job, SealedReader& reader, PendingOutput& output) {
    while (!reader.IsAtEnd()) {
        const SealedReader::Piece piece = reader.Next();
        const EngineResult written = ResultOfOutput(output.Write(piece.plain));
        if (written != EngineResult::Success) return written;
        if (piece.isCutShort) return EngineResult::ReadError;
        job.ShowProgress(reader.ReadBytes(), reader.TotalBytes());
        if (job.IsStopped()) return EngineResult::Stopped;
    }
    return EngineResult::Success;
}

/// Reading or writing failed on the way: what was recovered before is kept, if anything was.
EngineResult KeepPart(EngineResult stoppedBy, PendingOutput& output, const OpenFile& input) {
    const bool keeps =
        stoppedBy == EngineResult::ReadError || stoppedBy == EngineResult::WriteError;
    if (!keeps || output.WrittenBytes() == 0) return stoppedBy;
    if (output.CommitPart(input) != FsStatus::Ok) return stoppedBy;
    return stoppedBy == EngineResult::ReadError ? EngineResult::ReadErrorPartial
                                                : EngineResult::WriteErrorPartial;
}

EngineResult DecryptInto(JobContext& job, SealedReader& reader, const OpenFile& input,
                         PendingOutput& output) {
    EngineResult result = ResultOfOutput(output.Begin(reader.Layout().plainBytes));
    if (result != EngineResult::Success) return result;
    result = WriteAll(job, reader, output);
    if (!reader.HasOpened()) { // nothing but zeros
        return result == EngineResult::Success ? EngineResult::WrongKeyOrCorrupt : result;
    }
    if (result != EngineResult::Success) return KeepPart(result, output, input);
    const EngineResult found = ResultOf(reader.Damage());
    result = ResultOfOutput(
        output.Commit(input, found == EngineResult::Success ? Extent::Whole : Extent::Part));
    return result == EngineResult::Success ? found : result;
}

/// Reads every piece.
EngineResult ReadAll(JobContext& job, SealedReader& reader) {
    while (!reader.IsAtEnd()) {
        if (reader.Next().isCutShort) return EngineResult::ReadError;
        job.ShowProgress(reader.ReadBytes(), reader.TotalBytes());
        if (job.IsStopped()) return EngineResult::Stopped;
    }
    return EngineResult::Success;
}

} // namespace

EngineResult RunDecryption(JobContext& job) {
    const OpenResult input = job.fileSystem.OpenForReading(job.inputPath);
    if (input.status != FsStatus::Ok) return ResultOfInput(input.status);
    if (SameFile(job.fileSystem, job.inputPath, job.outputPath)) {
        return EngineResult::OutputNotOpened;
    }
    const auto info = input.file->Info();
    if (!info) return EngineResult::ReadError;
    SealedReader reader(job, *input.file);
    EngineResult result = reader.ReadHeader(info->lengthBytes);
    if (result != EngineResult::Success) return result;

    PendingOutput output(job.fileSystem, job.random, job.outputPath, job.hooks.observer,
                         {.overwrites = true, .progress = job.hooks.progress});
    result = DecryptInto(job, reader, *input.file, output);
    output.Discard(); // what was not committed
    return result;
}

EngineResult RunCheck(JobContext& job) {
    const OpenResult input = job.fileSystem.OpenForReading(job.inputPath);
    if (input.status != FsStatus::Ok) return ResultOfInput(input.status);
    const auto info = input.file->Info();
    if (!info) return EngineResult::ReadError;
    input.file->ForgetCached(0, 0);
    SealedReader reader(job, *input.file);
    EngineResult result = reader.ReadHeader(info->lengthBytes);
    if (result == EngineResult::Success) result = ReadAll(job, reader);
    if (result != EngineResult::Success) return result;
    return reader.HasOpened() ? ResultOf(reader.Damage()) : EngineResult::WrongKeyOrCorrupt;
}

} // namespace zr5
