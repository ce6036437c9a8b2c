#include "tests/model/interruptions.h"

#include "tests/replaced.h"

namespace model {

namespace {

template <auto Slot, class Record>
std::shared_ptr<void> stop_before(Record& record, const std::function<void()>& stop) {
    return std::make_shared<tests::Replaced<Slot>>(record,
                                                   [stop, original = record.*Slot](auto... arguments) {
                                                       stop();
                                                       return original(arguments...);
                                                   });
}

// What the end of a process sets off ends others: the walk goes on at the first that is left.
std::shared_ptr<void> stop_after_deletion(host::Engine& engine, const std::function<void()>& stop) {
    const auto original = engine.runtime().DeleteProcess;
    return std::make_shared<tests::Replaced<&HostRuntime::DeleteProcess>>(
        engine.runtime(), [&engine, stop, original](ProcessLocals* process, std::int32_t two) {
            original(process, two);
            stop();
            return engine.processes().first(host::scroll_coordinates);
        });
}

template <auto Slot>
std::shared_ptr<void> in_graphics(host::Engine& engine, const std::function<void()>& stop) {
    return stop_before<Slot>(engine.graphics(), stop);
}
template <auto Slot>
std::shared_ptr<void> in_processes(host::Engine& engine, const std::function<void()>& stop) {
    return stop_before<Slot>(engine.process_services(), stop);
}

}  // namespace

using G = Graphics2DInterface;
using P = ProcessServices;
const std::vector<InterruptedSlot> kInterruptedSlots{
    {"DeleteProcess", stop_after_deletion},
    {"FirstProcessOfType", in_processes<&P::FirstProcessOfType>},
    {"ProcessExists", in_processes<&P::ProcessExists>},
    {"GetMap", in_graphics<&G::GetMap>},
    {"GetFile", in_graphics<&G::GetFile>},
    {"RegionCount", in_graphics<&G::RegionCount>},
    {"NewBlit", in_graphics<&G::NewBlit>},
    {"SelectBlitList", in_graphics<&G::SelectBlitList>}};

}  // namespace model
