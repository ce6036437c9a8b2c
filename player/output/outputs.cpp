#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>

#include "player/common/new_file.h"
#include "player/common/stop.h"
#include "player/output/contact_sheet.h"
#include "player/output/output.h"

namespace player {
namespace {

namespace fs = std::filesystem;

void make_folder(const fs::path& folder) {
    std::error_code error;
    if (!folder.empty()) fs::create_directories(folder, error);
    if (error) throw std::runtime_error(folder.string() + ": " + error.message());
}

// The folder of a file is made, too.
void require_writable(const fs::path& file) {
    if (file.empty()) return;
    make_folder(file.parent_path());
    const NewFile tried(file.string());
}

// The place of the sheet is the one that people give to pictures of their own as well.
void require_our_sheet(const std::string& path) {
    if (!fs::is_regular_file(path)) return;
    try {
        if (is_contact_sheet(read_png(path))) return;
    } catch (const std::exception&) {  // no picture, so none of ours
    }
    throw std::runtime_error(path +
                             ": this is no contact sheet of an earlier run, so it stays; name another place "
                             "with --sheet or --out");
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
    if (!options.film.empty() && fs::weakly_canonical(options.film) == fs::weakly_canonical(options.sheet))
        throw std::runtime_error(options.film + ": film and contact sheet cannot have the same name");
    require_writable(options.sheet);
    require_writable(options.film);
    make_folder(options.shots_folder);
    Outputs outputs;
    if (!options.shots_folder.empty() || !options.sheet.empty()) outputs.push_back(make_shots(options));
    if (!options.film.empty()) outputs.push_back(make_recorder(options.film, options.scale));
    return outputs;
}

void choose_places(Options& options) {
    if (options.out.empty() || (!options.shots_folder.empty() && !options.sheet.empty())) return;
    const fs::path name = fs::path(options.script).stem();
    if (name == "." || name == "..")
        throw std::runtime_error(options.script + ": no folder of pictures can be called \"" + name.string() +
                                 "\"; name places with --shots and --sheet");
    const fs::path place = fs::path(options.out) / name;
    if (options.sheet.empty()) {
        options.sheet = place.string() + ".png";
        require_our_sheet(options.sheet);
    }
    if (options.shots_folder.empty()) {
        options.shots_folder = place.string();
        if (fs::is_symlink(place))
            throw std::runtime_error(
                options.shots_folder +
                ": this is a link, which is not followed; name another place with --shots or --out");
        remove_shots(options.shots_folder);
    }
}

int deliver(const Outputs& outputs, const std::function<int()>& play) {
    const Salvage salvage([&] { finish(outputs); });
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
