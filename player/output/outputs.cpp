#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>

#include "player/output/output.h"

namespace player {
namespace {

namespace fs = std::filesystem;

void remove_shots(const fs::path& folder) {
    if (!fs::is_directory(folder)) return;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().starts_with("frame_") && entry.path().extension() == ".png")
            fs::remove(entry.path());
}

void make_folder(const fs::path& folder) {
    std::error_code error;
    if (!folder.empty()) fs::create_directories(folder, error);
    if (error) throw std::runtime_error(folder.string() + ": " + error.message());
}

// All of them, even when one fails; then the first error.
void finish(const Outputs& outputs) {
    std::exception_ptr failure;
    for (const auto& output : outputs) {
        try {
            for (const std::string& line : output->finish()) std::printf("%s\n", line.c_str());
        } catch (const std::exception&) {
            if (!failure) failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
}

}  // namespace

Outputs make_outputs(const Options& asked) {
    Options options = asked;
    // The inspector enlarges the game itself, and its own text not at all.
    if (options.inspect && !options.window) options.scale = 1;
    for (const std::string& file : {options.sheet, options.film}) make_folder(fs::path(file).parent_path());
    make_folder(options.shots_folder);
    Outputs outputs;
    if (!options.shots_folder.empty() || !options.sheet.empty()) outputs.push_back(make_shots(options));
    if (!options.film.empty()) outputs.push_back(make_recorder(options.film, options.scale));
    return outputs;
}

void choose_places(Options& options) {
    if (options.out.empty()) return;
    const fs::path place = fs::path(options.out) / fs::path(options.script).stem();
    if (options.shots_folder.empty()) {
        options.shots_folder = place.string();
        remove_shots(place);
    }
    if (options.sheet.empty()) options.sheet = place.string() + ".png";
}

int deliver(const Outputs& outputs, const std::function<int()>& play) {
    int status = 0;
    try {
        status = play();
    } catch (...) {
        try {
            finish(outputs);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
        }
        throw;
    }
    finish(outputs);
    return status;
}

}  // namespace player
