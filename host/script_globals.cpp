#include "host/script_globals.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstring>
#include <utility>

#include "host/error.h"
#include "host/patterned.h"

namespace host {

namespace {

// Words of pattern before the first struct and after each: an offset of 0 taken for granted, and a write past
// the last element, both show.
constexpr std::size_t lead = 64;  // bytes
constexpr std::size_t gap = 32;
constexpr std::int64_t largest_struct = 1 << 24;

std::string quoted(std::string_view text) {
    std::string result(1, '\'');
    return result.append(text).append(1, '\'');
}

// Reads the words, numbers and signs of a declaration text.
class Reader {
  public:
    explicit Reader(std::string_view text) : text_(text) { skip_blanks(); }

    [[nodiscard]] bool at_end() const { return at_ == text_.size(); }

    [[nodiscard]] bool take(std::string_view token) {
        if (!text_.substr(at_).starts_with(token)) return false;
        const std::size_t after = at_ + token.size();
        if (is_word(token.back()) && after < text_.size() && is_word(text_[after])) return false;
        at_ = after;
        skip_blanks();
        return true;
    }

    void expect(std::string_view token) {
        if (!take(token)) fail(quoted(token));
    }

    std::string name() {
        const auto begin = text_.begin() + static_cast<std::ptrdiff_t>(at_);
        const auto end = std::find_if_not(begin, text_.end(), is_word);
        if (begin == end || std::isdigit(static_cast<unsigned char>(*begin)) != 0) fail("a name");
        at_ += static_cast<std::size_t>(end - begin);
        std::string result(begin, end);
        skip_blanks();
        return result;
    }

    std::int32_t number() {
        std::int32_t value = 0;
        const char* begin = text_.data() + at_;
        const auto [end, error] = std::from_chars(begin, text_.data() + text_.size(), value);
        if (error != std::errc()) fail("a number of 32 bits");
        at_ += static_cast<std::size_t>(end - begin);
        skip_blanks();
        return value;
    }

    [[noreturn]] void fail(const std::string& expected) const {
        throw Error("declarations of globals: expected " + expected + " at character " + std::to_string(at_) +
                    ", found \"" + std::string(text_.substr(at_, 24)) + "\"");
    }

  private:
    [[nodiscard]] static bool is_word(char c) {
        return c == '_' || std::isalnum(static_cast<unsigned char>(c)) != 0;
    }
    void skip_blanks() {
        while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_])) != 0) ++at_;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

GlobalField read_field(Reader& reader) {
    reader.expect("int");
    GlobalField field{reader.name(), 0};
    if (reader.take("=")) field.default_value = reader.number();
    reader.expect(";");
    return field;
}

GlobalStruct read_struct(Reader& reader) {
    reader.expect("struct");
    GlobalStruct result;
    result.name = reader.name();
    if (reader.take("[")) {
        result.count = reader.number();
        if (result.count < 1) reader.fail("a count of at least 1 before this");
        reader.expect("]");
    }
    while (!reader.take("end")) {
        GlobalField field = read_field(reader);
        if (result.field_index(field.name)) reader.fail("no second field '" + field.name + "' before this");
        result.fields.push_back(std::move(field));
    }
    if (result.fields.empty()) reader.fail("a field before 'end'");
    if (static_cast<std::int64_t>(result.element_size()) * result.count > largest_struct)
        reader.fail("a struct of at most " + std::to_string(largest_struct) + " bytes before this");
    return result;
}

}  // namespace

std::optional<std::size_t> GlobalStruct::field_index(std::string_view field) const {
    const auto found =
        std::find_if(fields.begin(), fields.end(), [&](const auto& f) { return f.name == field; });
    if (found == fields.end()) return std::nullopt;
    return static_cast<std::size_t>(found - fields.begin());
}

std::vector<GlobalStruct> compile_globals(std::string_view text) {
    Reader reader(text);
    std::vector<GlobalStruct> structs;
    while (!reader.at_end()) structs.push_back(read_struct(reader));
    return structs;
}

ScriptGlobals::ScriptGlobals(Fence fence) : fence_(fence) {
    clear();
}

void ScriptGlobals::clear() {
    structs_.clear();
    memory_ = Memory();
    resize(lead);
}

// Grows the area, at another address; what is new of it holds the pattern.
void ScriptGlobals::resize(std::size_t bytes) {
    Memory larger(bytes, fence_);
    const std::size_t kept = std::min(bytes, memory_.size());
    if (kept != 0) std::memcpy(larger.data(), memory_.data(), kept);
    for (std::size_t at = kept; at < bytes; at += 4) {
        const std::uint32_t word = pattern_word(at / 4);
        std::memcpy(larger.data() + at, &word, 4);
    }
    std::fill_n(memory_.data(), memory_.size(), std::byte{0xDD});
    memory_ = std::move(larger);
}

void ScriptGlobals::declare(std::string_view text) {
    for (GlobalStruct& declared : compile_globals(text)) {
        if (find(declared.name) != nullptr) throw Error("the global '" + declared.name + "' exists already");
        declared.offset = memory_.size();
        resize(memory_.size() + declared.element_size() * static_cast<std::size_t>(declared.count) + gap);
        structs_.push_back(std::move(declared));
        const GlobalStruct& placed = structs_.back();
        for (std::int32_t i = 0; i < placed.count; ++i)
            for (const GlobalField& field : placed.fields)
                at(placed.name, i, field.name) = field.default_value;
    }
}

const GlobalStruct* ScriptGlobals::find(std::string_view name) const {
    const auto found =
        std::find_if(structs_.begin(), structs_.end(), [&](const auto& s) { return s.name == name; });
    return found == structs_.end() ? nullptr : &*found;
}

std::int32_t& ScriptGlobals::at(std::string_view name, std::int32_t index, std::string_view field) {
    const GlobalStruct* s = find(name);
    if (s == nullptr) throw Error("there is no global '" + std::string(name) + "'");
    if (index < 0 || index >= s->count)
        throw Error("'" + s->name + "' has elements 0 to " + std::to_string(s->count - 1) + ", not " +
                    std::to_string(index));
    const auto place = s->field_index(field);
    if (!place) {
        std::string known;
        for (const GlobalField& f : s->fields) known += (known.empty() ? "" : ", ") + f.name;
        throw Error("'" + s->name + "' has no field '" + std::string(field) + "'; it has " + known);
    }
    const std::size_t offset = s->offset + static_cast<std::size_t>(index) * s->element_size() + 4 * *place;
    return *reinterpret_cast<std::int32_t*>(memory_.data() + offset);
}

std::optional<std::int32_t> ScriptGlobals::offset_of(std::string_view path) const {
    const std::size_t dot = path.find('.');
    const GlobalStruct* s = find(path.substr(0, dot));
    if (s == nullptr) return std::nullopt;
    if (dot == std::string_view::npos) return static_cast<std::int32_t>(s->offset);
    const auto place = s->field_index(path.substr(dot + 1));
    if (!place) return std::nullopt;
    return static_cast<std::int32_t>(s->offset + 4 * *place);
}

void ScriptGlobals::move() {
    resize(memory_.size());
}

std::uint8_t* ScriptGlobals::data() {
    return reinterpret_cast<std::uint8_t*>(memory_.data());
}

void ScriptGlobals::check(std::vector<std::string>& violations) const {
    std::vector<bool> declared(memory_.size() / 4);
    for (const GlobalStruct& s : structs_)
        std::fill_n(declared.begin() + static_cast<std::ptrdiff_t>(s.offset / 4),
                    s.fields.size() * static_cast<std::size_t>(s.count), true);
    for (std::size_t i = 0; i < declared.size(); ++i) {
        std::uint32_t word = 0;
        std::memcpy(&word, memory_.data() + 4 * i, 4);
        if (!declared[i] && word != pattern_word(i))
            violations.push_back("globals: the word at byte " + std::to_string(4 * i) +
                                 " belongs to no global and was written");
    }
    if (!memory_.slack_untouched()) violations.emplace_back("globals: memory beside them was written");
}

}  // namespace host
