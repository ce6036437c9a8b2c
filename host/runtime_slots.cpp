// The plain functions behind the runtime's records. They find the engine by the one that lives, since a slot
// has no object argument, and they never throw, since the module is on the stack.
#include <string>

#include "host/engine.h"

namespace host {

struct Engine::Slots {
    // Nothing of the runtime is to be used before the init hook.
    static Engine& enter(const char* slot) noexcept {
        Engine& engine = *live_;
        if (engine.registering_) engine.add_fault(std::string(slot) + " was called during registration");
        return engine;
    }

    // ---- HostRuntime

    // The call being served, or null with a fault.
    static CallFrame* frame(const char* slot) noexcept {
        Engine& engine = enter(slot);
        if (engine.call_ == nullptr)
            engine.add_fault(std::string(slot) + " was called outside a script call");
        return engine.call_;
    }

    static std::int32_t param_count() noexcept {
        const CallFrame* call = frame("ParamCount");
        return call != nullptr ? call->argument_count() : 0;
    }

    static std::int32_t pop_int() noexcept {
        std::int32_t value = 0;
        CallFrame* call = frame("PopInt");
        if (call != nullptr && !call->pop(value))
            live_->add_fault("PopInt was called more often than there are arguments");
        return value;
    }

    static std::int32_t return_int(std::int32_t value) noexcept {
        CallFrame* call = frame("ReturnInt");
        if (call == nullptr) return 0;
        call->returned = true;
        call->value = value;
        return call->token();
    }

    static std::int32_t raise_error(std::int32_t code, const char* function, std::int32_t zero,
                                    std::int32_t argument, std::int32_t value) noexcept {
        enter("RaiseError")
            .errors_.push_back({code, function != nullptr ? function : "", zero, argument, value});
        return 0;
    }

    static std::int32_t global_offset(std::int32_t zero, const char* name) noexcept {
        Engine& engine = enter("GlobalOffset");
        if (zero != 0) engine.add_fault("the first argument of GlobalOffset is not 0");
        const auto offset = engine.globals_.offset_of(name);
        if (!offset)
            engine.add_fault("GlobalOffset was asked for '" + std::string(name) + "', which is not declared");
        return offset.value_or(0);
    }

    static ProcessNode* delete_process(ProcessLocals* process, std::int32_t two) noexcept {
        Engine& engine = enter("DeleteProcess");
        if (two != 2) engine.add_fault("the second argument of DeleteProcess is not 2");
        const std::int32_t id = process != nullptr ? Processes::id_of(*process) : 0;
        if (engine.processes_.exists(id)) return engine.processes_.destroy(id);
        engine.add_fault("DeleteProcess was given a process that is not alive");
        return nullptr;
    }

    // ---- ProcessServices

    static ProcessNode* first_process(std::int32_t type) noexcept {
        return enter("FirstProcessOfType").processes_.first(type);
    }
    static std::int32_t process_exists(std::int32_t id) noexcept {
        return enter("ProcessExists").processes_.exists(id) ? 1 : 0;
    }

    // ---- Graphics2DInterface

    static void* create_list(const char* name, std::int32_t size, std::int32_t growth) noexcept {
        Engine& engine = enter("CreateBlitList");
        const std::string list = name != nullptr ? name : "";
        if (list.empty() || engine.blit_lists_.find(list) != nullptr)
            engine.add_fault("CreateBlitList was given the name '" + list + "', which is empty or taken");
        if (size < 1 || growth < 1) engine.add_fault("CreateBlitList was given a size or a growth below 1");
        return &engine.blit_lists_.create(list);
    }

    static std::int32_t select_list(void* list) noexcept {
        Engine& engine = enter("SelectBlitList");
        if (engine.blit_lists_.select(list)) return 1;
        engine.add_fault("SelectBlitList was given a handle that is not a list");
        return 0;
    }

    static BlitQueue& current(const char* slot) noexcept { return enter(slot).blit_lists_.current(); }

    static __RVKBlit2D__* new_blit() noexcept { return current("NewBlit").add(); }
    static std::int32_t sort_list() noexcept {
        Engine& engine = enter("SortBlitList");
        engine.blit_lists_.current().sort();
        if (engine.observer_ != nullptr) engine.observer_->sorted(engine.blit_lists_.current());
        return 1;
    }
    static std::int32_t clear_list() noexcept {
        current("ClearBlitList").clear();
        return 1;
    }
    static BlitList* get_list() noexcept { return current("GetBlitList").record(); }
    static std::int32_t list_count() noexcept { return current("BlitListCount").count(); }

    static FileRecord* get_file(std::int32_t file) noexcept {
        return enter("GetFile").files_.find_file(file);
    }
    static std::int32_t file_count() noexcept { return enter("FileCount").files_.file_count(); }
    static std::int32_t system_graph_count() noexcept {
        return enter("SystemGraphCount").files_.system_graph_count();
    }
    static std::int32_t region_count() noexcept { return enter("RegionCount").regions_.count(); }
    static MapEntry* get_map(std::int32_t file, std::int32_t graph) noexcept {
        Map* map = enter("GetMap").files_.find_map(file, graph);
        return map != nullptr ? &map->entry() : nullptr;
    }
    static std::int32_t region_defined(std::int32_t region) noexcept {
        return enter("RegionDefined").regions_.defined(region) ? 1 : 0;
    }

    template <bool rotated, bool scaled, bool general>
    static std::int32_t sprite(__RVKBlit2D__* blit) noexcept {
        Engine& engine = enter("a sprite routine");
        if (blit != nullptr)
            return draw_sprite(*blit, {rotated, scaled, general}, engine.video().bits_per_pixel);
        engine.add_fault("a sprite routine was called without an entry");
        return 0;
    }

    static void publish(Graphics2DInterface& g) {
        g.BlitSprite = sprite<false, false, false>;
        g.BlitSpriteScaled = sprite<false, true, false>;
        g.BlitSpriteRotated = sprite<true, false, false>;
        g.BlitSpriteRotatedScaled = sprite<true, true, false>;
        g.BlitSpriteGeneral = sprite<false, true, true>;
        g.BlitSpriteRotatedGeneral = sprite<true, true, true>;
        g.CreateBlitList = create_list;
        g.SelectBlitList = select_list;
        g.NewBlit = new_blit;
        g.SortBlitList = sort_list;
        g.ClearBlitList = clear_list;
        g.GetBlitList = get_list;
        g.BlitListCount = list_count;
        g.GetFile = get_file;
        g.FileCount = file_count;
        g.SystemGraphCount = system_graph_count;
        g.RegionCount = region_count;
        g.GetMap = get_map;
        g.RegionDefined = region_defined;
        g.ScrollSystem = nullptr;
    }

    static void publish(HostRuntime& r) {
        r.ParamCount = param_count;
        r.PopInt = pop_int;
        r.ReturnInt = return_int;
        r.RaiseError = raise_error;
        r.GlobalOffset = global_offset;
        r.DeleteProcess = delete_process;
    }

    static void publish(ProcessServices& p) {
        p.FirstProcessOfType = first_process;
        p.ProcessExists = process_exists;
    }
};

void Engine::publish_runtime() {
    Slots::publish(graphics());
    Slots::publish(runtime());
    Slots::publish(process_services());
    runtime().GlobalData = globals_.data();
    runtime().Processes = &process_services();
    runtime().FrameState = &frame_state();
    runtime().Graphics = &graphics();
    frame_state().suspend_flag = &suspend_flag_;
    graphics().Video = &video();
    video().reset_flag = 0;
}

}  // namespace host
