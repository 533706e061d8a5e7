#include "libs/cipher/jobs.h"
#include "libs/cipher/sealed_reader.h"
#include "libs/system/paths.h"

#include <algorithm>

namespace zr5 {
namespace {

/// Hands every piece to `take`; what ended the work early, if anything did.
template <typename Take>
EngineResult ReadAll(JobContext& job, SealedReader& reader, const Take& take) {
    while (!reader.IsAtEnd()) {
        const SealedReader::Piece piece = reader.Next();
        if (piece.isCutShort) return EngineResult::ReadError;
        const EngineResult taken = take(piece.plain);
        if (taken != EngineResult::Success) return taken;
        job.ShowProgress(reader.ReadBytes(), reader.TotalBytes());
        if (job.IsStopped()) return EngineResult::Stopped;
    }
    return reader.Result();
}

/// What is kept of a file that ended so: all, what could be recovered, or nothing.
EngineResult Keep(EngineResult result, const JobContext& job, PendingOutput& output,
                  const OpenFile& input) {
    if (result == EngineResult::Success) return ResultOfOutput(output.Commit(input));
    if (!IsPartial(result)) return result;
    const std::string& base =
        job.hooks.salvageBase.empty() ? job.outputPath : job.hooks.salvageBase;
    const FsStatus kept = output.Salvage(input, base);
    return kept == FsStatus::Ok ? result : ResultOfOutput(kept);
}

/// Of reading or writing that failed on the way, after some blocks were opened.
EngineResult AsPartial(EngineResult result) {
    if (result == EngineResult::ReadError) return EngineResult::ReadErrorPartial;
    return result == EngineResult::WriteError ? EngineResult::WriteErrorPartial : result;
}

EngineResult DecryptInto(JobContext& job, SealedReader& reader, const OpenFile& input,
                         PendingOutput& output) {
    // A length is a claim until the blocks are there.
    const EngineResult begun =
        ResultOfOutput(output.Begin(std::min(reader.PlainBytes(), reader.TotalBytes())));
    if (begun != EngineResult::Success) return begun;
    if (reader.GapBytes() != 0 && output.LeaveGap(reader.GapBytes()) != FsStatus::Ok) {
        return EngineResult::WriteError;
    }
    bool hasPart = false; // anything but zeros
    const EngineResult result = ReadAll(job, reader, [&](std::span<const std::byte> plain) {
        const EngineResult written = ResultOfOutput(output.Write(plain));
        if (written == EngineResult::Success) hasPart = reader.HasOpened();
        return written;
    });
    return Keep(hasPart ? AsPartial(result) : result, job, output, input);
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
    EngineResult result = reader.ReadHeaders(info->lengthBytes);
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
    EngineResult result = reader.ReadHeaders(info->lengthBytes);
    if (result != EngineResult::Success) return result;
    result = ReadAll(job, reader, [](auto) { return EngineResult::Success; });
    return reader.HasOpened() ? AsPartial(result) : result;
}

} // namespace zr5
