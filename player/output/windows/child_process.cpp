#include "player/output/child_process.h"

#include <windows.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace player {
namespace {

std::string reason() {
    return std::system_category().message(static_cast<int>(GetLastError()));
}

HANDLE handle_of(std::intptr_t number) {
    return reinterpret_cast<HANDLE>(number);
}

// Programs take their command line apart by one rule: within quotes, backslashes before a quote are doubled
// and the quote has one more.
std::wstring quoted(const std::string& word) {
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : std::filesystem::path(word).wstring()) {
        if (c == L'"') text.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, L'\\') + L"\"";
}

std::wstring command_line(const std::vector<std::string>& words) {
    std::wstring line;
    for (const std::string& word : words) line += (line.empty() ? L"" : L" ") + quoted(word);
    return line;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE theirs = nullptr, ours = nullptr;
    if (CreatePipe(&theirs, &ours, &inherited, 0) == 0) throw std::runtime_error(reason());
    input_ = reinterpret_cast<std::intptr_t>(ours);
    SetHandleInformation(ours, HANDLE_FLAG_INHERIT, 0);

    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = theirs;
    start.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    std::wstring line = command_line(words);
    const BOOL runs = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP,
                                     nullptr, nullptr, &start, &process);
    const std::string why = reason();
    CloseHandle(theirs);
    if (runs == 0) {
        close_input();
        throw std::runtime_error(words[0] + " cannot be run: " + why);
    }
    CloseHandle(process.hThread);
    process_ = reinterpret_cast<std::intptr_t>(process.hProcess);
}

ChildProcess::~ChildProcess() {
    [[maybe_unused]] const bool content = finish();
}

void ChildProcess::close_input() {
    if (input_ != none) CloseHandle(handle_of(std::exchange(input_, none)));
}

bool ChildProcess::write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        DWORD count = 0;
        if (WriteFile(handle_of(input_), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) ==
            0)
            return false;
        bytes = bytes.subspan(count);
    }
    return true;
}

bool ChildProcess::finish() {
    close_input();
    if (process_ == none) return true;
    const HANDLE process = handle_of(std::exchange(process_, none));
    WaitForSingleObject(process, INFINITE);
    DWORD status = 1;
    GetExitCodeProcess(process, &status);
    CloseHandle(process);
    return status == 0;
}

bool ChildProcess::is_installed(const std::string& program) {
    const std::wstring name = std::filesystem::path(program).wstring();
    return SearchPathW(nullptr, name.c_str(), L".exe", 0, nullptr, nullptr) != 0;
}

}  // namespace player
