#include "bench/report.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace bench {

std::string Measurement::name() const {
    const std::string scene = family + ", " + variant + ", " + std::to_string(bits_per_pixel) + " bits, " +
                              text(view) + ", " + value;
    return part == "draw" ? pictures + ", " + scene : scene;
}

void Heading::print_once() {
    if (!text_.empty()) std::printf("\n%s", text_.c_str());
    text_.clear();
}

void Report::write_csv(const std::string& path) const {
    std::ofstream file(path);
    file << "part,pictures,family,variant,bits_per_pixel,width,height,value,contender,microseconds,ratio\n";
    for (const Measurement& m : measurements_) {
        file << m.part << ',' << m.pictures << ",\"" << m.family << "\",\"" << m.variant << "\","
             << m.bits_per_pixel << ',' << m.view.width << ',' << m.view.height << ',' << m.value << ','
             << m.contender << ',' << m.microseconds << ',' << m.ratio << '\n';
    }
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
}

}  // namespace bench
