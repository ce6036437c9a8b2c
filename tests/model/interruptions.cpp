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

}  // namespace

std::shared_ptr<void> interrupt(host::Engine& engine, std::size_t slot, const std::function<void()>& stop) {
    using G = Graphics2DInterface;
    using P = ProcessServices;
    switch (slot) {
        case 0:
            return stop_after_deletion(engine, stop);
        case 1:
            return stop_before<&P::FirstProcessOfType>(engine.process_services(), stop);
        case 2:
            return stop_before<&P::ProcessExists>(engine.process_services(), stop);
        case 3:
            return stop_before<&G::GetMap>(engine.graphics(), stop);
        case 4:
            return stop_before<&G::GetFile>(engine.graphics(), stop);
        case 5:
            return stop_before<&G::RegionCount>(engine.graphics(), stop);
        case 6:
            return stop_before<&G::NewBlit>(engine.graphics(), stop);
        default:
            return stop_before<&G::SelectBlitList>(engine.graphics(), stop);
    }
}

}  // namespace model
