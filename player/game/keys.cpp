#include "player/game/keys.h"

#include <algorithm>
#include <stdexcept>

#include "player/common/names.h"

namespace player {
namespace {

void check_key(const std::string& name) {
    const auto& names = Keys::names();
    if (std::find(names.begin(), names.end(), name) == names.end())
        throw std::runtime_error("there is no key \"" + name + "\"" + suggestion(name, names));
}

}  // namespace

const std::vector<std::string>& Keys::names() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> list{"left",   "right", "up",    "down", "space", "enter",
                                      "escape", "tab",   "shift", "ctrl", "alt",   "backspace"};
        for (int i = 1; i <= 12; ++i) list.push_back(std::string("f").append(std::to_string(i)));
        for (char c = 'a'; c <= 'z'; ++c) list.emplace_back(1, c);
        for (char c = '0'; c <= '9'; ++c) list.emplace_back(1, c);
        for (const char* button :
             {"left", "right", "up", "down", "a", "b", "x", "y", "l", "r", "start", "back"})
            list.push_back(std::string("pad_") + button);
        return list;
    }();
    return names;
}

bool Keys::down(const std::string& name) const {
    check_key(name);
    return played_.contains(name) || held_.contains(name);
}

void Keys::play(const std::string& name, bool down) {
    check_key(name);
    if (down)
        played_.insert(name);
    else
        played_.erase(name);
}

void DeviceKeys::press(Source source, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        held_.emplace(source, name);
        tapped_.insert(name);
    }
}

void DeviceKeys::release(Source source) {
    std::erase_if(held_, [source](const auto& key) { return key.first == source; });
}

void DeviceKeys::release_all() {
    held_.clear();
    tapped_.clear();
}

std::set<std::string> DeviceKeys::take() {
    std::set<std::string> names;
    names.swap(tapped_);
    for (const auto& [source, name] : held_) names.insert(name);
    return names;
}

}  // namespace player
