// The finished file: what it needs and what it shows.
#include <doctest/doctest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Names = std::set<std::string>;

// The lines that readelf prints, each as its words.
std::vector<std::vector<std::string>> readelf(const std::string& options) {
    FILE* const pipe = popen(("LC_ALL=C readelf -W " + options + " " SCROLL2D_MODULE).c_str(), "r");
    std::string text;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) text += static_cast<char>(c);
    REQUIRE(pclose(pipe) == 0);
    std::vector<std::vector<std::string>> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line);
        lines.emplace_back(std::istream_iterator<std::string>(words), std::istream_iterator<std::string>());
    }
    return lines;
}

// Num: Value Size Type Bind Vis Ndx Name@version
Names symbols(bool defined) {
    Names names;
    for (const auto& words : readelf("--dyn-syms"))
        if (words.size() > 7 && words[4] != "Bind" && words[4] != "LOCAL" && (words[6] != "UND") == defined &&
            (defined || words[4] != "WEAK"))
            names.insert(words[7].substr(0, words[7].find('@')));
    return names;
}

// The names of the version script's global part.
Names listed_exports() {
    std::ifstream text(SCROLL2D_EXPORTS);
    Names names;
    for (std::string word; text >> word && word != "local:";)
        if (word.size() > 1 && word.back() == ';') names.insert(word.substr(0, word.size() - 1));
    return names;
}

TEST_CASE("the file is a 32-bit module that shows the listed symbols and no others") {
    std::string header;
    for (const auto& words : readelf("-h"))
        for (const std::string& word : words) header += word + " ";
#ifdef __arm__
    constexpr const char* machine = "Machine: ARM";
    constexpr const char* calls = "Version5 EABI, hard-float ABI";
#else
    constexpr const char* machine = "Machine: Intel 80386";
    constexpr const char* calls = "Flags: 0x0";
#endif
    for (const char* what : {"Class: ELF32", "little endian", machine, calls, "Type: DYN"})
        CHECK(header.find(what) != std::string::npos);
    const Names exported = symbols(true);
    for (const std::string& name : exported) CHECK((name == "rvkre" || name.starts_with("RVK_")));
    CHECK(exported.size() == 12);
    CHECK((exported == listed_exports()));
}

// Sanitizers and asserts need more; what ships needs this.
TEST_CASE("the file is small, and needs malloc, free and memcpy of the C library and nothing else" *
          doctest::skip(!SCROLL2D_SHIPS)) {
    // Where the part that a program maps ends; stripping leaves little more than that.
#if defined(__clang__)
    constexpr std::uint32_t limit = 270'000;  // not the compiler that makes what ships
#elif defined(__arm__)
    constexpr std::uint32_t limit = 70'000;  // one build of each loop
#else
    constexpr std::uint32_t limit = 180'000;
#endif
    constexpr std::uint32_t section_headers = 2'000;
    std::uint32_t end_of_loaded = 0;
    for (const auto& words : readelf("-l"))
        if (words.size() > 4 && words[0] == "LOAD")
            end_of_loaded = static_cast<std::uint32_t>(std::stoul(words[1], nullptr, 16) +
                                                       std::stoul(words[4], nullptr, 16));
    CHECK(end_of_loaded > 0);
    CHECK(end_of_loaded < limit - section_headers);
    CHECK((symbols(false) == Names{"free", "malloc", "memcpy"}));
    Names needed;
    for (const auto& words : readelf("-d")) {
        if (words.size() < 2) continue;
        CHECK(words[1] != "(TEXTREL)");
        if (words[1] == "(NEEDED)") needed.insert(words.back());
    }
    CHECK((needed == Names{"[libc.so.6]"}));
}

}  // namespace
