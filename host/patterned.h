// A shared record with a pattern in every word that has no name, so that a write to such a word shows.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "module/contract/host_records.h"

namespace host {

// The pattern of word i of any record: unlikely as a size, a coordinate or an address.
[[nodiscard]] constexpr std::uint32_t pattern_word(std::size_t i) {
    return 0xD1CE0000U | static_cast<std::uint32_t>(i & 0xFFFFU);
}

// For each word of a record the bits that have a name. All others belong to the host alone.
struct NamedBits {
    const char* record;
    std::vector<std::uint32_t> bits;
};
template <class Record>
[[nodiscard]] const NamedBits& named_bits();

// Appends to `violations` one line for each of the `count` words that lost the pattern in a bit without a
// name. Words past the end of `names` have no name at all.
void check_pattern(const NamedBits& names, const std::uint32_t* words, std::size_t count,
                   const std::string& which, std::vector<std::string>& violations);

// A record followed by words that lie past its end as the module knows it; a real host's records go on there.
template <class Record>
class Patterned {
  public:
    // The named words are 0, so that a slot which nobody fills is null.
    Patterned() { fill(named_bits<Record>().bits); }
    Patterned(const Patterned&) = delete;
    Patterned& operator=(const Patterned&) = delete;

    [[nodiscard]] Record& get() { return storage_.record; }
    [[nodiscard]] const Record& get() const { return storage_.record; }

    // Puts the pattern into every word, the named ones included.
    void fill() { fill({}); }

    // `which` tells this record from others of its kind in the lines appended to `violations`.
    void check(const std::string& which, std::vector<std::string>& violations) const {
        std::array<std::uint32_t, word_count> words;
        std::memcpy(words.data(), static_cast<const void*>(&storage_), sizeof storage_);
        check_pattern(named_bits<Record>(), words.data(), word_count, which, violations);
    }

  private:
    // The pattern, but 0 in the bits of `cleared`.
    void fill(std::span<const std::uint32_t> cleared) {
        std::array<std::uint32_t, word_count> words;
        for (std::size_t i = 0; i < word_count; ++i)
            words[i] = pattern_word(i) & ~(i < cleared.size() ? cleared[i] : 0U);
        std::memcpy(static_cast<void*>(&storage_), words.data(), sizeof storage_);
    }

    static constexpr std::size_t tail_words = 8;
    static constexpr std::size_t word_count = sizeof(Record) / 4 + tail_words;
    struct {
        Record record;
        std::uint32_t tail[tail_words];
    } storage_;
};

}  // namespace host
