// Loading a module: dependencies, the five registrar slots, the init hook; and letting it go.
#include <algorithm>
#include <string>
#include <utility>

#include "host/engine.h"
#include "host/module_library.h"
#include "module/contract/host_check.h"

namespace host {

namespace {

const std::string symbol_prefix = "RVK_mod_scroll2D_MainLibrary";
constexpr std::string_view provided_module = "RVK_mod_graphics2D";

using ExportsFunction = std::int32_t (*)(ExportRegistrar*);

// What the module would call at address 0.
void require(const char* missing_slot) {
    if (missing_slot != nullptr) throw Error(std::string(missing_slot) + " is null");
}

// The word of each slot in the registrar's record.
enum class Slot : int { constants = 0, globals = 4, functions = 6, hooks = 7, runtime = 9 };

}  // namespace

// The module's frames are on the stack while these run, so what goes wrong is noted and thrown by load().
struct Engine::RegistrarSlots {
    // Each slot is to be called once, in the order of the record.
    static Engine& enter(Slot slot) noexcept {
        Engine& engine = *live_;
        if (!engine.registering_) engine.add_fault("a registrar slot was called outside registration");
        const int word = static_cast<int>(slot);
        if (word < engine.registrar_calls_)
            engine.add_fault("registrar word " + std::to_string(word) + " was called twice or out of order");
        engine.registrar_calls_ = word + 1;
        return engine;
    }

    template <class Work>
    static void attempt(Engine& engine, Work&& work) noexcept {
        try {
            work();
        } catch (const std::exception& e) {
            engine.registration_errors_.emplace_back(e.what());
        }
    }

    static void constants(const ConstantRow* table) noexcept {
        Engine& engine = enter(Slot::constants);
        for (; table->name != nullptr; ++table) engine.constants_.push_back({table->name, table->value});
    }

    static void globals(const char* declarations) noexcept {
        Engine& engine = enter(Slot::globals);
        attempt(engine, [&] {
            engine.globals_.declare(declarations);
            engine.runtime().GlobalData = engine.globals_.data();
        });
    }

    static void functions(const FunctionRow* table) noexcept {
        Engine& engine = enter(Slot::functions);
        for (; table->signature != nullptr; ++table)
            attempt(engine, [&] { engine.functions_.push_back(parse_function(*table)); });
    }

    static void hooks(const HookRow* table) noexcept {
        Engine& engine = enter(Slot::hooks);
        for (; table->function != nullptr; ++table) {
            attempt(engine, [&] {
                if (table->id < 1 || table->id >= static_cast<std::int32_t>(engine.hooks_.size()))
                    throw Error("there is no hook " + std::to_string(table->id));
                engine.hooks_[static_cast<std::size_t>(table->id)] = table->function;
            });
        }
    }

    static HostRuntime* runtime() noexcept { return &enter(Slot::runtime).runtime_.get(); }
};

void Engine::publish_registrar() {
    ExportRegistrar& r = registrar();
    r.RegisterConstants = RegistrarSlots::constants;
    r.RegisterGlobals = RegistrarSlots::globals;
    r.RegisterFunctions = RegistrarSlots::functions;
    r.RegisterHooks = RegistrarSlots::hooks;
    r.GetRuntime = RegistrarSlots::runtime;
}

void Engine::load(const std::filesystem::path& path) {
    if (loaded()) throw Error("a module is loaded already");
    const std::size_t faults_before = faults_.size();
    library_ = std::make_unique<ModuleLibrary>(path);
    try {
        check_dependencies();
        require(rvk_missing_registrar_slot(&registrar()));
        register_module();
        require(rvk_missing_slot(&runtime(), 1));
        run_hook(Hook::init);
    } catch (...) {
        forget_module();
        throw;
    }
    if (faults_.size() == faults_before) return;
    const std::string fault = faults_[faults_before];
    unload();
    throw Error(path.string() + " broke the contract while it was loaded: " + fault);
}

void Engine::check_dependencies() const {
    const auto* names = static_cast<const char* const*>(library_->get(symbol_prefix + "Dependencies"));
    for (; *names != nullptr; ++names)
        if (*names != provided_module)
            throw Error("the module needs " + std::string(*names) + "; this host provides " +
                        std::string(provided_module));
}

void Engine::register_module() {
    const auto exports = reinterpret_cast<ExportsFunction>(library_->get(symbol_prefix + "Exports"));
    registration_errors_.clear();
    registrar_calls_ = 0;
    registering_ = true;
    const std::int32_t result = exports(&registrar());
    registering_ = false;
    if (!registration_errors_.empty()) throw Error("registration: " + registration_errors_.front());
    if (result != 1) throw Error("registration returned " + std::to_string(result) + ", not 1");
}

void Engine::unload() {
    if (!loaded()) return;
    run_hook(Hook::release);
    forget_module();
}

// Nothing may keep an address in the module's code or data once it is closed.
void Engine::forget_module() {
    hooks_.fill(nullptr);
    constants_.clear();
    functions_.clear();
    globals_.clear();
    runtime().GlobalData = globals_.data();
    blit_lists_.reset();
    graphics().ScrollSystem = nullptr;
    library_.reset();
}

void* Engine::symbol(const std::string& name) const {
    return library_ ? library_->find(name) : nullptr;
}

}  // namespace host
