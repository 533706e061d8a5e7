#include "util/language_lists.h"

namespace zr5 {
namespace {

constexpr std::string_view StopWordProgram = "FAREBEV";

constexpr LanguageList Names{"English", "German", "Spanish",          "Portuguese",
                             "Italian", "French", "all six languages"};
constexpr LanguageList CommonWordFiles{"cwds_en.txt",
                                       "cwds_de.txt",
                                       "cwds_es.txt",
                                       "cwds_pt.txt",
                                       "cwds_it.txt",
                                       "cwds_fr.txt",
                                       "cwds_en_de_es_pt_it_fr.txt"};
constexpr LanguageList StopWordFiles{"stwds_en.txt",
                                     "stwds_de.txt",
                                     "stwds_es.txt",
                                     "stwds_pt.txt",
                                     "stwds_it.txt",
                                     "stwds_fr.txt",
                                     "stwds_en_de_es_pt_it_fr.txt"};

} // namespace

LanguageLists LanguageListsFor(std::string_view executableName) {
    return {Names, CommonWordFiles,
            executableName == StopWordProgram ? StopWordFiles : LanguageList{}};
}

} // namespace zr5
