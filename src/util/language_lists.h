#pragma once

// The six languages of the program family, and the names of their word lists.

#include <array>
#include <string_view>

namespace zr5 {

/// English, German, Spanish, Portuguese, Italian, French, and all six together.
inline constexpr std::size_t LanguageCount = 7;
using LanguageList = std::array<std::string_view, LanguageCount>;

struct LanguageLists {
    LanguageList names;
    LanguageList commonWordFiles;
    LanguageList stopWordFiles; ///< empty texts, but for the one program that uses them
};

/// `executableName` is compared with attention to case.
[[nodiscard]] LanguageLists LanguageListsFor(std::string_view executableName);

} // namespace zr5
