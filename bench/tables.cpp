#include <algorithm>
#include <cstdio>
#include <functional>
#include <set>

#include "bench/report.h"

namespace bench {
namespace {

using Scenes = std::vector<Drawn>;
using Which = std::function<bool(const Drawn&)>;
using Cell = std::function<double(const Scenes&)>;  // 0 leaves it empty

struct Column {
    std::string title;
    Cell cell;
};
struct Row {
    std::string title;
    Scenes scenes;
};

Scenes those(const Scenes& scenes, const Which& which) {
    Scenes chosen;
    std::copy_if(scenes.begin(), scenes.end(), std::back_inserter(chosen), which);
    return chosen;
}

std::vector<double> ratios(const Scenes& scenes, Base base) {
    std::vector<double> list;
    for (const Drawn& scene : scenes)
        if (const auto found = scene.ratios.find(base); found != scene.ratios.end())
            list.push_back(found->second);
    return list;
}

double mean(const std::vector<double>& values) {
    return values.empty() ? 0 : geometric_mean(values);
}

double worst(const std::vector<double>& values) {
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

// The means of the scenes of each family and depth: the rows of the table of families, each counting once.
std::vector<double> family_means(const Scenes& scenes, Base base) {
    std::map<std::pair<const Family*, std::int32_t>, std::vector<double>> rows;
    for (const Drawn& scene : scenes)
        if (const auto found = scene.ratios.find(base); found != scene.ratios.end())
            rows[{scene.family, scene.bits_per_pixel}].push_back(found->second);
    std::vector<double> means;
    for (const auto& [row, values] : rows) means.push_back(mean(values));
    return means;
}

bool moves(const Drawn& scene) {
    return scene.motion.moves();
}

bool moves_and_blends(const Drawn& scene) {
    return moves(scene) && scene.family->blends();
}

bool stands(const Drawn& scene) {
    return !scene.motion.moves();
}

Cell scene_mean(Base base, const Which& which) {
    return [=](const Scenes& scenes) { return mean(ratios(those(scenes, which), base)); };
}
Cell worst_scene(Base base) {
    return [=](const Scenes& scenes) { return worst(ratios(those(scenes, moves), base)); };
}
Cell row_mean(Base base, const Which& which) {
    return [=](const Scenes& scenes) { return mean(family_means(those(scenes, which), base)); };
}
Cell worst_row(Base base) {
    return [=](const Scenes& scenes) { return worst(family_means(those(scenes, moves), base)); };
}

// Nanoseconds a pixel in the motion that every view shows.
double pixel_mean(const Scenes& scenes) {
    std::vector<double> list;
    for (const Drawn& scene : scenes)
        if (scene.motion.step == by_four.step)
            list.push_back(1000 * scene.microseconds / (scene.view.width * scene.view.height));
    return mean(list);
}

// Columns without a figure in any row are left out.
void print_table(const std::string& title, const std::vector<Row>& rows, const std::vector<Column>& columns) {
    struct Figures {
        const char* title;
        int width;
        std::vector<double> cells;
    };
    std::vector<Figures> shown;
    for (const Column& column : columns) {
        Figures figures{column.title.c_str(), std::max(5, static_cast<int>(column.title.size())), {}};
        for (const Row& row : rows) figures.cells.push_back(column.cell(row.scenes));
        if (worst(figures.cells) != 0) shown.push_back(std::move(figures));
    }
    std::printf("\n| %-44s |", title.c_str());
    for (const Figures& f : shown) std::printf(" %*s |", f.width, f.title);
    std::printf("\n|---|");
    for (std::size_t i = 0; i < shown.size(); ++i) std::printf("--:|");
    std::printf("\n");
    for (std::size_t r = 0; r < rows.size(); ++r) {
        std::printf("| %-44s |", rows[r].title.c_str());
        for (const Figures& f : shown) {
            if (f.cells[r] == 0) std::printf(" %*s |", f.width, "");
            if (f.cells[r] != 0) std::printf(" %*.2f |", f.width, f.cells[r]);
        }
        std::printf("\n");
    }
}

std::vector<Row> rows_of_kinds(const Scenes& scenes) {
    std::vector<Row> rows;
    for (const Kind& kind : kinds()) {
        Scenes of_kind = those(scenes, [&](const Drawn& scene) { return scene.kind == &kind; });
        if (!of_kind.empty()) rows.push_back({kind.what, std::move(of_kind)});
    }
    return rows;
}

std::vector<Row> rows_of_families(const Scenes& scenes) {
    std::vector<Row> rows;
    for (const Family& family : families()) {
        for (const std::int32_t bits : family.depths) {
            Scenes chosen = those(scenes, [&](const Drawn& scene) {
                return scene.family == &family && scene.bits_per_pixel == bits;
            });
            const std::string title = std::string(family.name) + ", " + std::to_string(bits) + " bits";
            if (!chosen.empty()) rows.push_back({title, std::move(chosen)});
        }
    }
    return rows;
}

std::vector<Row> rows_of_views(const Scenes& scenes) {
    const auto less = [](Size a, Size b) { return a.width < b.width; };
    std::set<Size, decltype(less)> views(less);
    for (const Drawn& scene : scenes) views.insert(scene.view);
    std::vector<Row> rows;
    for (const Size view : views)
        rows.push_back({text(view), those(scenes, [&](const Drawn& scene) { return scene.view == view; })});
    return rows;
}

// One column for each kind of pictures, of its scenes alone.
std::vector<Column> columns_of_kinds(const Cell& cell) {
    std::vector<Column> columns;
    for (const Kind& kind : kinds())
        columns.push_back(
            {kind.name, [&kind, cell](const Scenes& scenes) {
                 return cell(those(scenes, [&kind](const Drawn& scene) { return scene.kind == &kind; }));
             }});
    return columns;
}

}  // namespace

void Report::print_tables() const {
    if (drawn_.empty()) return;
    const std::vector<Row> kinds = rows_of_kinds(drawn_);
    const std::vector<Column> verdict{
        {"t / M", row_mean(Base::memcpy, moves)},
        {"worst", worst_row(Base::memcpy)},
        {"/straight", row_mean(Base::straight, moves)},
        {"worst", worst_row(Base::straight)},
        {"blending", row_mean(Base::straight, moves_and_blends)},
        {"/other", row_mean(Base::other, moves)},
        {"worst", worst_row(Base::other)},
        {"blending", row_mean(Base::other, moves_and_blends)},
        {"/peer", row_mean(Base::peer, moves)},
        {"still: t / M", row_mean(Base::memcpy, stands)},
        {"/straight", row_mean(Base::straight, stands)},
        {"/other", row_mean(Base::other, stands)},
        {"scenes: t / M", scene_mean(Base::memcpy, moves)},
        {"/straight", scene_mean(Base::straight, moves)},
        {"/other", scene_mean(Base::other, moves)},
        {"/peer", scene_mean(Base::peer, moves)},
    };
    if (kinds.size() == 1) {
        print_table(kinds.front().title, rows_of_families(drawn_),
                    {{"t / M", scene_mean(Base::memcpy, moves)},
                     {"worst", worst_scene(Base::memcpy)},
                     {"/straight", scene_mean(Base::straight, moves)},
                     {"worst", worst_scene(Base::straight)},
                     {"/other", scene_mean(Base::other, moves)},
                     {"worst", worst_scene(Base::other)},
                     {"/peer", scene_mean(Base::peer, moves)},
                     {"/RLE", scene_mean(Base::run_length, moves)},
                     {"still: t / M", scene_mean(Base::memcpy, stands)},
                     {"/straight", scene_mean(Base::straight, stands)},
                     {"/other", scene_mean(Base::other, stands)}});
    } else {
        for (const auto& [base, title] : {std::pair{Base::memcpy, "t / M"},
                                          {Base::straight, "t / straight loops"},
                                          {Base::other, "t / other build"},
                                          {Base::peer, "t / best peer"},
                                          {Base::run_length, "t / SDL2 with runs"}}) {
            if (ratios(drawn_, base).empty()) continue;
            print_table(title, rows_of_families(drawn_), columns_of_kinds(scene_mean(base, moves)));
        }
    }
    print_table("view, nanoseconds a pixel", rows_of_views(drawn_), columns_of_kinds(pixel_mean));
    if (!ratios(drawn_, Base::straight).empty())
        print_table("view, blending, t / straight loops", rows_of_views(drawn_),
                    columns_of_kinds(scene_mean(Base::straight, moves_and_blends)));
    print_table("pictures", kinds, verdict);
}

}  // namespace bench
