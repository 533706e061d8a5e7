#include "operation/listing_summary.h"

#include "util/numbers.h"

namespace zr5 {
namespace {

std::string Line(const std::string& text) {
    return text + "\r\n";
}

std::string Indication(Purpose purpose, const RandomnessCounts& counts) {
    if (counts.measured < 2 || counts.below == counts.above) return {};
    const bool encrypts = purpose == Purpose::Encrypt;
    const bool areEncrypted = counts.above > counts.below;
    std::string text = Line(std::string("This indicates that all or most files are ") +
                            (areEncrypted ? "" : "not ") + "already encrypted or compressed.");
    if (encrypts != areEncrypted) return text;
    return text + Line("Warning: You may be trying to " + VerbForm(purpose, "encrypt") +
                       (encrypts ? " already-encrypted files!" : " already-decrypted files!"));
}

} // namespace

std::string ListingSummaryText(Purpose purpose, const ListingSummary& listing) {
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
        text += Indication(purpose, counts);
    }
    return text;
}

} // namespace zr5
