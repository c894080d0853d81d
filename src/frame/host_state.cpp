#include "frame/host_state.h"

namespace qv8 {

#if defined(__i386__) || defined(__x86_64__)

namespace {

// Exceptions that have happened in the old unit, and among them one that is to be raised at its next instruction.
constexpr std::uint16_t kX87Flags = 0x00FF;
constexpr std::uint16_t kX87Pending = 0x0080;

std::uint16_t X87Flags() {
    std::uint16_t status = 0;
    asm volatile("fnstsw %0" : "=m"(status)::"memory");
    return status & kX87Flags;
}

void SetX87Modes(std::uint16_t modes) {
    asm volatile("fldcw %0" ::"m"(modes) : "memory");
}

void SetSseModes(std::uint32_t modes) {
    asm volatile("ldmxcsr %0" ::"m"(modes) : "memory");
}

// Single flags can only be set along with everything else.
void SetX87ModesAndFlags(std::uint16_t modes, std::uint16_t flags) {
    struct {
        std::uint32_t modes, status, others[5];
    } environment;
    asm volatile("fnstenv %0" : "=m"(environment)::"memory");
    environment.modes = (environment.modes & 0xFFFF0000U) | modes;
    environment.status = (environment.status & ~std::uint32_t{kX87Flags}) | flags;
    asm volatile("fldenv %0" ::"m"(environment) : "memory");
}

} // namespace

void HostState::Take() {
    host_ = {CurrentModes(), X87Flags()};
    if ((host_.x87Flags & kX87Pending) != 0) { // it is the host's, and must not be raised here
        asm volatile("fnclex" ::: "memory");
    }
    if (host_.modes.x87 != ProcessorModes().x87) {
        SetX87Modes(ProcessorModes().x87);
    }
    if (host_.modes.sse != ProcessorModes().sse) {
        SetSseModes(ProcessorModes().sse);
    }
}

void HostState::GiveBack() const {
    const ProcessorModes ours = CurrentModes();
    if (ours.sse != host_.modes.sse) {
        SetSseModes(host_.modes.sse);
    }
    // Flags of ours would become the host's exceptions, were these not masked.
    if (X87Flags() != host_.x87Flags) {
        SetX87ModesAndFlags(host_.modes.x87, host_.x87Flags);
    } else if (ours.x87 != host_.modes.x87) {
        SetX87Modes(host_.modes.x87);
    }
}

#else

void HostState::Take() {
    std::fegetenv(&host_);
    std::fesetenv(FE_DFL_ENV);
}

void HostState::GiveBack() const {
    std::fesetenv(&host_);
}

#endif

} // namespace qv8
