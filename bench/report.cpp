#include "bench/report.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace bench {
namespace {

void append(std::vector<double>& to, const std::vector<double>& from) {
    to.insert(to.end(), from.begin(), from.end());
}

void print_row(const std::string& name, const std::string& depth, const DrawFigures& figures) {
    std::printf("| %-36s | %5s | %5.2f | %5.2f |", name.c_str(), depth.c_str(),
                geometric_mean(figures.per_memcpy),
                *std::max_element(figures.per_memcpy.begin(), figures.per_memcpy.end()));
    if (!figures.per_peer.empty()) std::printf(" %5.2f |", geometric_mean(figures.per_peer));
    if (!figures.per_run_length.empty()) std::printf(" %5.2f |", geometric_mean(figures.per_run_length));
    std::printf("\n");
}

}  // namespace

std::string Measurement::name() const {
    return family + ", " + variant + ", " + std::to_string(bits_per_pixel) + " bits, " + text(view) + ", " +
           value;
}

void Heading::print_once() {
    if (!text_.empty()) std::printf("\n%s", text_.c_str());
    text_.clear();
}

void Report::add_drawn(const Family& family, std::int32_t bits, double per_memcpy) {
    drawn_[{&family, bits}].per_memcpy.push_back(per_memcpy);
}

void Report::add_peer(const Family& family, std::int32_t bits, double ratio) {
    drawn_[{&family, bits}].per_peer.push_back(ratio);
}

void Report::add_run_length(const Family& family, std::int32_t bits, double ratio) {
    drawn_[{&family, bits}].per_run_length.push_back(ratio);
}

void Report::print_table() const {
    if (drawn_.empty()) return;
    const bool peers = !drawn_.begin()->second.per_peer.empty();
    const bool run_length = !drawn_.begin()->second.per_run_length.empty();
    std::printf("\n| family                               | depth | t / M | worst |%s%s\n",
                peers ? " /peer |" : "", run_length ? "  /RLE |" : "");
    std::printf("|---|---|---|---|%s%s\n", peers ? "---|" : "", run_length ? "---|" : "");
    DrawFigures scenes, rows;
    for (const auto& [row, figures] : drawn_) {  // families() is one array, so pointers order as the table
        print_row(row.first->name, std::to_string(row.second), figures);
        append(scenes.per_memcpy, figures.per_memcpy);
        append(scenes.per_peer, figures.per_peer);
        append(scenes.per_run_length, figures.per_run_length);
        rows.per_memcpy.push_back(geometric_mean(figures.per_memcpy));
        if (peers) rows.per_peer.push_back(geometric_mean(figures.per_peer));
    }
    print_row("everything: " + std::to_string(scenes.per_memcpy.size()) + " scenes", "all", scenes);
    print_row("everything: rows of this table", "all", rows);
}

void Report::write_csv(const std::string& path) const {
    std::ofstream file(path);
    file << "part,family,variant,bits_per_pixel,width,height,value,contender,microseconds,ratio\n";
    for (const Measurement& m : measurements_) {
        file << m.part << ",\"" << m.family << "\",\"" << m.variant << "\"," << m.bits_per_pixel << ','
             << m.view.width << ',' << m.view.height << ',' << m.value << ',' << m.contender << ','
             << m.microseconds << ',' << m.ratio << '\n';
    }
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
}

}  // namespace bench
