#include "host/patterned.h"

#include <cstdio>
#include <initializer_list>

namespace host {

namespace {

struct Field {
    std::size_t offset;  // bytes
    std::size_t size;
};

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

// The words of a record that have a name.
#define FIELD(name) (Field{offsetof(Record, name), sizeof(Record::name)})
#define NAMED(record, ...)                                                             \
    template <>                                                                        \
    const NamedBits& named_bits<record>() {                                            \
        using Record = record;                                                         \
        static const NamedBits bits = bits_of(#record, sizeof(Record), {__VA_ARGS__}); \
        return bits;                                                                   \
    }

NAMED(ExportRegistrar, FIELD(RegisterConstants), FIELD(RegisterGlobals), FIELD(RegisterFunctions),
      FIELD(RegisterHooks), FIELD(GetRuntime))
NAMED(HostRuntime, FIELD(GlobalData), FIELD(Processes), FIELD(ParamCount), FIELD(PopInt), FIELD(ReturnInt),
      FIELD(RaiseError), FIELD(GlobalOffset), FIELD(DeleteProcess), FIELD(FrameState), FIELD(Graphics))
NAMED(ProcessServices, FIELD(FirstProcessOfType), FIELD(ProcessExists))
NAMED(Graphics2DInterface, FIELD(Video), FIELD(ScreenMap), FIELD(Regions), FIELD(BlitSprite),
      FIELD(BlitSpriteScaled), FIELD(BlitSpriteRotated), FIELD(BlitSpriteRotatedScaled),
      FIELD(BlitSpriteGeneral), FIELD(BlitSpriteRotatedGeneral), FIELD(CreateBlitList), FIELD(SelectBlitList),
      FIELD(NewBlit), FIELD(SortBlitList), FIELD(ClearBlitList), FIELD(GetBlitList), FIELD(BlitListCount),
      FIELD(GetFile), FIELD(FileCount), FIELD(SystemGraphCount), FIELD(RegionCount), FIELD(GetMap),
      FIELD(RegionDefined), FIELD(ScrollSystem))
NAMED(FrameState, FIELD(suspend_flag))
NAMED(VideoInfo, FIELD(bits_per_pixel), FIELD(reset_flag))
NAMED(FileRecord, FIELD(word1), FIELD(word2))
NAMED(MapEntry, FIELD(word0), FIELD(bitmap))
NAMED(MapRecord, FIELD(width), FIELD(height), FIELD(pixels), FIELD(alpha_flag), FIELD(cpoint_count),
      FIELD(cpoints))
NAMED(ProcessNode, FIELD(data), FIELD(next))
NAMED(ProcessLocals, FIELD(status), FIELD(scroll_mark), FIELD(scroll_mask), FIELD(file), FIELD(graph),
      FIELD(graph_table), FIELD(x), FIELD(y), FIELD(z), FIELD(word33), FIELD(region), FIELD(resolution),
      FIELD(word38), FIELD(angle), FIELD(size), FIELD(size_x), FIELD(size_y), FIELD(word43), FIELD(word44),
      FIELD(flags), FIELD(word46), FIELD(word47), FIELD(word48), FIELD(word49))
NAMED(__RVKBlit2D__, FIELD(id), FIELD(owner), FIELD(drawn), FIELD(x), FIELD(x2), FIELD(y), FIELD(y2),
      FIELD(graph_table), FIELD(pos_x), FIELD(pos_y), FIELD(z), FIELD(region), FIELD(resolution),
      FIELD(word20), FIELD(angle), FIELD(size), FIELD(size_x), FIELD(size_y), FIELD(word25), FIELD(word26),
      FIELD(flags), FIELD(word28), FIELD(word29), FIELD(word30), FIELD(word31), FIELD(has_clip),
      FIELD(clip_x), FIELD(clip_x2), FIELD(clip_y), FIELD(clip_y2), FIELD(bitmap), FIELD(target), FIELD(draw))
NAMED(BlitList, FIELD(zorder))

}  // namespace host
