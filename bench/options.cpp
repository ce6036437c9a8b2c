#include "bench/options.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "bench/pictures.h"

namespace bench {

std::optional<Options> parse_options(int argc, char** argv, int& exit_status) {
    Options options;
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    options.module = (program.parent_path() / "RVK_mod_scroll2D.so").string();
    const auto opened = program.parent_path() / "opened_module.so";
    if (std::filesystem::exists(opened)) options.opened = opened.string();

    CLI::App app{"Times the scroll module beside memcpy, SDL2 and pixman.", "scroll2d_bench"};
    app.add_flag("--quick", options.quick, "A subset in under a minute, with fewer and shorter turns");
    app.add_option("--only", options.only, "One part of the measurements")
        ->check(CLI::IsMember({"draw", "fill", "move", "growth", "frame"}));
    app.add_option("--filter", options.filter,
                   "Only measurements whose name, like \"1 plane keyed, mode 2, 16 bits, 640x480, still\", "
                   "contains this text");
    std::vector<std::string> kind_names;
    for (const Kind& kind : kinds()) kind_names.emplace_back(kind.name);
    app.add_option("--kind", options.kind, "One kind of pictures to draw")->check(CLI::IsMember(kind_names));
    app.add_option("--sheet", options.sheet, "Measure nothing; show the kinds of pictures in this PNG");
    app.add_option("--csv", options.csv, "Write every measurement into this file");
    app.add_flag("--rle", options.run_length,
                 "Time SDL2 with run-length encoded surfaces too, for comparison; it counts as no peer");
    app.add_flag("!--no-peers", options.peers, "Leave SDL2 and pixman out, which take most of the time");
    app.add_option("--module", options.module, "Module to load [RVK_mod_scroll2D.so beside this program]")
        ->check(CLI::ExistingFile);
    app.add_option("--against", options.other,
                   "Another build of the module, to draw every scene side by side")
        ->check(CLI::ExistingFile);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& parse_error) {
        exit_status = app.exit(parse_error);
        return std::nullopt;
    }
    return options;
}

}  // namespace bench
