#include "libs/cipher/safe_file.h"

#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/pending_output.h"

namespace zr5 {
namespace {

FsStatus StatusOf(std::int32_t code) {
    switch (code) {
    case engine_code::Success:
        return FsStatus::Ok;
    case engine_code::DiskFull:
        return FsStatus::NoSpace;
    case engine_code::OutputNotOpened:
        return FsStatus::NotPermitted;
    default:
        return FsStatus::IoError;
    }
}

} // namespace

FsStatus WriteSafely(FileSystem& fileSystem, RandomSource& random, const std::string& path,
                     std::span<const std::byte> content, IfThere ifThere) {
    PendingOutput file(fileSystem, random, path);
    std::int32_t code = file.Begin(content.size());
    if (file.Replaces() && ifThere == IfThere::Refuse) return FsStatus::AlreadyExists;
    if (code == engine_code::Success) code = file.Write(content);
    if (code == engine_code::Success) code = file.CommitPrivate();
    return StatusOf(code);
}

FirstBytes ReadFirstBytes(FileSystem& fileSystem, const std::string& path, std::size_t most) {
    FirstBytes first{FsStatus::Ok, SecretBytes(most), 0};
    const OpenResult opened = fileSystem.OpenForReading(path);
    first.status = opened.status;
    if (opened.status != FsStatus::Ok) return first;
    const ReadResult read = opened.file->Read(first.bytes.bytes());
    first.status = read.status;
    first.count = read.count;
    return first;
}

} // namespace zr5
