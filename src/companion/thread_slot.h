// A value that each thread has for itself.
#pragma once

#ifdef _WIN32
#include "qv8platform.h"
#endif

namespace qv8 {

// A pointer, null in every thread to begin with. On Windows it lies in a slot of the system: the compiler's own
// variables of threads are allocated when a thread first uses them, and end the process when there is no memory then.
template <class Object>
class ThreadSlot {
public:
#ifdef _WIN32
    ThreadSlot() : index_(TlsAlloc()) {}
    ThreadSlot(const ThreadSlot&) = delete;
    ThreadSlot& operator=(const ThreadSlot&) = delete;
    ~ThreadSlot() {
        TlsFree(index_);
    }
    Object* Get() const {
        return static_cast<Object*>(TlsGetValue(index_));
    }
    void Set(Object* value) const {
        TlsSetValue(index_, value);
    }

private:
    DWORD index_;
#else
    Object* Get() const {
        return held;
    }
    void Set(Object* value) const {
        held = value;
    }

private:
    static inline thread_local Object* held = nullptr; // one for each type of object
#endif
};

} // namespace qv8
