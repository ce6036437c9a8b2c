#include "host/patterned.h"

#include <cstdio>
#include <initializer_list>

namespace host {

namespace {

struct Field {
    std::size_t offset;  // bytes
    std::size_t size;
};
#define FIELD(record, name) (Field{offsetof(record, name), sizeof(record::name)})

NamedBits bits_of(const char* record, std::size_t size, std::initializer_list<Field> fields) {
    NamedBits result{record, std::vector<std::uint32_t>(size / 4, 0U)};
    for (const Field& field : fields)
        for (std::size_t byte = field.offset; byte < field.offset + field.size; ++byte)
            result.bits[byte / 4] |= 0xFFU << (8 * (byte % 4));
    return result;
}

}  // namespace

void check_pattern(const NamedBits& names, const std::uint32_t* words, std::size_t count,
                   const std::string& which, std::vector<std::string>& violations) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t named = i < names.bits.size() ? names.bits[i] : 0U;
        if (((words[i] ^ pattern_word(i)) & ~named) == 0) continue;
        char value[16];
        std::snprintf(value, sizeof value, "0x%08x", static_cast<unsigned>(words[i]));
        violations.push_back(std::string(names.record) + (which.empty() ? "" : " " + which) + ": word " +
                             std::to_string(i) + " is the host's alone and was set to " + value);
    }
}

template <>
const NamedBits& named_bits<ExportRegistrar>() {
    using R = ExportRegistrar;
    static const NamedBits bits =
        bits_of("ExportRegistrar", sizeof(R),
                {FIELD(R, RegisterConstants), FIELD(R, RegisterGlobals), FIELD(R, RegisterFunctions),
                 FIELD(R, RegisterHooks), FIELD(R, GetRuntime)});
    return bits;
}

template <>
const NamedBits& named_bits<HostRuntime>() {
    using R = HostRuntime;
    static const NamedBits bits =
        bits_of("HostRuntime", sizeof(R),
                {FIELD(R, GlobalData), FIELD(R, Processes), FIELD(R, ParamCount), FIELD(R, PopInt),
                 FIELD(R, ReturnInt), FIELD(R, RaiseError), FIELD(R, GlobalOffset), FIELD(R, DeleteProcess),
                 FIELD(R, FrameState), FIELD(R, Graphics)});
    return bits;
}

template <>
const NamedBits& named_bits<ProcessServices>() {
    using R = ProcessServices;
    static const NamedBits bits =
        bits_of("ProcessServices", sizeof(R), {FIELD(R, FirstProcessOfType), FIELD(R, ProcessExists)});
    return bits;
}

template <>
const NamedBits& named_bits<Graphics2DInterface>() {
    using R = Graphics2DInterface;
    static const NamedBits bits = bits_of("Graphics2DInterface", sizeof(R),
                                          {FIELD(R, Video),
                                           FIELD(R, ScreenMap),
                                           FIELD(R, Regions),
                                           FIELD(R, BlitSprite),
                                           FIELD(R, BlitSpriteScaled),
                                           FIELD(R, BlitSpriteRotated),
                                           FIELD(R, BlitSpriteRotatedScaled),
                                           FIELD(R, BlitSpriteGeneral),
                                           FIELD(R, BlitSpriteRotatedGeneral),
                                           FIELD(R, CreateBlitList),
                                           FIELD(R, SelectBlitList),
                                           FIELD(R, NewBlit),
                                           FIELD(R, SortBlitList),
                                           FIELD(R, ClearBlitList),
                                           FIELD(R, GetBlitList),
                                           FIELD(R, BlitListCount),
                                           FIELD(R, GetFile),
                                           FIELD(R, FileCount),
                                           FIELD(R, SystemGraphCount),
                                           FIELD(R, RegionCount),
                                           FIELD(R, GetMap),
                                           FIELD(R, RegionDefined),
                                           FIELD(R, ScrollSystem)});
    return bits;
}

template <>
const NamedBits& named_bits<FrameState>() {
    static const NamedBits bits =
        bits_of("FrameState", sizeof(FrameState), {FIELD(FrameState, suspend_flag)});
    return bits;
}

template <>
const NamedBits& named_bits<VideoInfo>() {
    using R = VideoInfo;
    static const NamedBits bits =
        bits_of("VideoInfo", sizeof(R), {FIELD(R, bits_per_pixel), FIELD(R, reset_flag)});
    return bits;
}

template <>
const NamedBits& named_bits<FileRecord>() {
    using R = FileRecord;
    static const NamedBits bits = bits_of("FileRecord", sizeof(R), {FIELD(R, word1), FIELD(R, word2)});
    return bits;
}

template <>
const NamedBits& named_bits<MapEntry>() {
    using R = MapEntry;
    static const NamedBits bits = bits_of("MapEntry", sizeof(R), {FIELD(R, word0), FIELD(R, bitmap)});
    return bits;
}

template <>
const NamedBits& named_bits<MapRecord>() {
    using R = MapRecord;
    static const NamedBits bits = bits_of("MapRecord", sizeof(R),
                                          {FIELD(R, width), FIELD(R, height), FIELD(R, pixels),
                                           FIELD(R, alpha_flag), FIELD(R, cpoint_count), FIELD(R, cpoints)});
    return bits;
}

template <>
const NamedBits& named_bits<ProcessNode>() {
    using R = ProcessNode;
    static const NamedBits bits = bits_of("ProcessNode", sizeof(R), {FIELD(R, data), FIELD(R, next)});
    return bits;
}

template <>
const NamedBits& named_bits<ProcessLocals>() {
    using R = ProcessLocals;
    static const NamedBits bits =
        bits_of("ProcessLocals", sizeof(R),
                {FIELD(R, status), FIELD(R, scroll_mark), FIELD(R, scroll_mask), FIELD(R, file),
                 FIELD(R, graph),  FIELD(R, graph_table), FIELD(R, x),           FIELD(R, y),
                 FIELD(R, z),      FIELD(R, word33),      FIELD(R, region),      FIELD(R, resolution),
                 FIELD(R, word38), FIELD(R, angle),       FIELD(R, size),        FIELD(R, size_x),
                 FIELD(R, size_y), FIELD(R, word43),      FIELD(R, word44),      FIELD(R, flags),
                 FIELD(R, word46), FIELD(R, word47),      FIELD(R, word48),      FIELD(R, word49)});
    return bits;
}

template <>
const NamedBits& named_bits<__RVKBlit2D__>() {
    using R = __RVKBlit2D__;
    static const NamedBits bits = bits_of(
        "__RVKBlit2D__", sizeof(R),
        {FIELD(R, id),       FIELD(R, owner),  FIELD(R, drawn),       FIELD(R, x),      FIELD(R, x2),
         FIELD(R, y),        FIELD(R, y2),     FIELD(R, graph_table), FIELD(R, pos_x),  FIELD(R, pos_y),
         FIELD(R, z),        FIELD(R, region), FIELD(R, resolution),  FIELD(R, word20), FIELD(R, angle),
         FIELD(R, size),     FIELD(R, size_x), FIELD(R, size_y),      FIELD(R, word25), FIELD(R, word26),
         FIELD(R, flags),    FIELD(R, word28), FIELD(R, word29),      FIELD(R, word30), FIELD(R, word31),
         FIELD(R, has_clip), FIELD(R, clip_x), FIELD(R, clip_x2),     FIELD(R, clip_y), FIELD(R, clip_y2),
         FIELD(R, bitmap),   FIELD(R, target), FIELD(R, draw)});
    return bits;
}

template <>
const NamedBits& named_bits<BlitList>() {
    static const NamedBits bits = bits_of("BlitList", sizeof(BlitList), {FIELD(BlitList, zorder)});
    return bits;
}

}  // namespace host
