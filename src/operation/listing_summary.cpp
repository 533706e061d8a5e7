#include "operation/listing_summary.h"

#include "util/numbers.h"

namespace zr5 {
namespace {

std::string Line(const std::string& text) {
    return text + "\r\n";
}

std::string Indication(Direction operation, const RandomnessCounts& counts) {
    if (counts.measured < 2 || counts.below == counts.above) return {};
    if (counts.below > counts.above) {
        return Line("This indicates that all or most files are not already encrypted or "
                    "compressed.") +
               (operation == Direction::Decrypt
                    ? Line("Warning: You may be trying to decrypt already-decrypted files!")
                    : std::string{});
    }
    return Line("This indicates that all or most files are already encrypted or compressed.") +
           (operation == Direction::Encrypt
                ? Line("Warning: You may be trying to encrypt already-encrypted files!")
                : std::string{});
}

} // namespace

std::string ListingSummaryText(Direction operation, const ListingSummary& listing) {
    const auto number = [](std::uint64_t count) {
        return AfterText(static_cast<std::int64_t>(count));
    };
    std::string text =
        Line((listing.wasCutShort ? "Number of files to this point:" : "Number of files:") +
             number(listing.files));
    if (listing.randomness) {
        const RandomnessCounts& counts = *listing.randomness;
        text += Line("Number of files with randomness value < 0:" + number(counts.below));
        text += Line("Number of files with randomness value > 0:" + number(counts.above));
        text += Indication(operation, counts);
    }
    return text;
}

} // namespace zr5
