// Slots of a host's records, replaced for a while.
#pragma once

#include <functional>
#include <utility>

namespace tests {

// A slot of a host record, replaced while this object lives; `original` is what stood there. Of two objects
// for one slot the inner one may not call its original.
template <auto Slot>
class Replaced;
template <class Record, class Result, class... Arguments, Result (*Record::*Slot)(Arguments...)>
class Replaced<Slot> {
  public:
    using Function = std::function<Result(Arguments...)>;
    Replaced(Record& record, Function instead)
        : original(record.*Slot), record_(record), outer_(std::exchange(function_, std::move(instead))) {
        record.*Slot = [](Arguments... arguments) -> Result { return function_(arguments...); };
    }
    ~Replaced() {
        record_.*Slot = original;
        function_ = std::move(outer_);
    }
    Replaced(const Replaced&) = delete;
    Replaced& operator=(const Replaced&) = delete;

    Result (*const original)(Arguments...);

  private:
    Record& record_;
    Function outer_;
    static inline Function function_;
};

}  // namespace tests
