#include "host/library_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string_view>

#include "host/error.h"

namespace host {

namespace {

#if defined(_WIN32)
constexpr std::string_view this_program = "32-bit x86 under Windows";
#elif defined(__i386__)
constexpr std::string_view this_program = "32-bit x86 under Linux";
#elif defined(__arm__)
constexpr std::string_view this_program = "32-bit ARM under Linux";
#else
constexpr std::string_view this_program = "another platform";
#endif

// A file that begins with `format` and has the number `machine` so many bytes into its header.
struct Kind {
    std::string_view format;
    std::size_t at;
    std::uint32_t machine;
    std::string_view made_for;
};

constexpr std::string_view elf = "\177ELF";
constexpr std::string_view pe{"PE\0\0", 4};
constexpr std::string_view wasm{"\0asm", 4};
constexpr Kind kinds[] = {
    {elf, 18, 3, "32-bit x86 under Linux"},
    {elf, 18, 62, "64-bit x86 under Linux"},
    {elf, 18, 40, "32-bit ARM under Linux"},
    {elf, 18, 183, "64-bit ARM under Linux"},
    {pe, 4, 0x14c, "32-bit x86 under Windows"},
    {pe, 4, 0x8664, "64-bit x86 under Windows"},
    {pe, 4, 0x1c4, "ARM under Windows"},
    {pe, 4, 0xaa64, "64-bit ARM under Windows"},
    {wasm, 4, 1, "WebAssembly"},
};

// Little-endian, of 16 bits; 0 beyond the end.
std::uint32_t number_at(std::string_view bytes, std::size_t at) {
    if (bytes.size() < at + 2) return 0;
    return static_cast<unsigned char>(bytes[at]) |
           static_cast<unsigned>(static_cast<unsigned char>(bytes[at + 1])) << 8;
}

// Empty: it is nothing known.
std::string_view made_for(const std::filesystem::path& path) {
    std::array<char, 4096> bytes{};
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), bytes.size());
    std::string_view header(bytes.data(), static_cast<std::size_t>(file.gcount()));
    // A program of Windows begins with one of its predecessor, which tells where the header is.
    if (header.starts_with("MZ"))
        header.remove_prefix(std::min<std::size_t>(header.size(), number_at(header, 0x3c)));
    const auto* found = std::find_if(std::begin(kinds), std::end(kinds), [&](const Kind& kind) {
        return header.starts_with(kind.format) && number_at(header, kind.at) == kind.machine;
    });
    return found != std::end(kinds) ? found->made_for : "";
}

}  // namespace

void require_library_file(const std::filesystem::path& path) {
    if (!std::filesystem::is_regular_file(path)) throw Error("there is no module file " + path.string());
}

void refuse_library(const std::filesystem::path& path, const std::string& reason) {
    const std::string_view other = made_for(path);
    std::string text = "cannot load " + path.string() + ": " + reason;
    if (!other.empty() && other != this_program)
        text +=
            "; it is made for " + std::string(other) + ", and this program for " + std::string(this_program);
    throw Error(text);
}

}  // namespace host
