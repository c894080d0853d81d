// The floating-point state of the processor: results must not depend on the modes that the host has set, and the host
// must find them again. The library computes in modes of its own; code of the host runs in the host's.
#pragma once

#include <cfenv>
#include <cstdint>

namespace qv8 {

#if defined(__i386__) || defined(__x86_64__)

// Rounding to nearest, no exceptions, no flushing; with the old unit, whose arc tangent we use, in full precision.
struct ProcessorModes {
    std::uint32_t sse = 0x1F80;
    std::uint16_t x87 = 0x037F;
};

inline ProcessorModes CurrentModes() {
    ProcessorModes modes;
    asm volatile("stmxcsr %0\n\tfnstcw %1" : "=m"(modes.sse), "=m"(modes.x87)::"memory");
    return modes;
}

inline bool AreOurs(const ProcessorModes& modes) {
    constexpr std::uint32_t kSseFlags = 0x3F; // what has happened so far; no mode
    return (modes.sse & ~kSseFlags) == ProcessorModes().sse && modes.x87 == ProcessorModes().x87;
}

struct ProcessorState {
    ProcessorModes modes;
    std::uint16_t x87Flags = 0;
};

#else

using ProcessorState = std::fenv_t;

#endif

// The host's state, taken when this is made and given back when it goes. In between the library's is in force.
class HostState {
public:
    HostState() {
        Take();
    }
    HostState(const HostState&) = delete;
    HostState& operator=(const HostState&) = delete;
    ~HostState() {
        GiveBack();
    }

    // Calls what may run code of the host: in the host's state, which that code may change for good. Within the callee
    // further calls cost nothing.
    template <class Callee>
    auto Call(Callee callee) {
        if (isInForce_) {
            return callee();
        }
        BeginHostCode();
        isInForce_ = true;
        auto result = callee();
        isInForce_ = false;
        EndHostCode();
        return result;
    }

private:
    void Take();
    void GiveBack() const;

#if defined(__i386__) || defined(__x86_64__)
    // Nearly every host has the modes we want. To look takes longer than all else in the report of a row.
    void BeginHostCode() {
        if (!AreOurs(host_.modes)) {
            GiveBack();
        }
    }
    void EndHostCode() {
        if (!AreOurs(host_.modes) || !AreOurs(CurrentModes())) {
            Take();
        }
    }
#else
    void BeginHostCode() {
        GiveBack();
    }
    void EndHostCode() {
        Take();
    }
#endif

    ProcessorState host_;
    bool isInForce_ = false; // the host's state, not ours
};

} // namespace qv8
