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
    bool IsUsable() const {
        return index_ != TLS_OUT_OF_INDEXES;
    }
    Object* Get() const {
        return static_cast<Object*>(TlsGetValue(index_));
    }
    // False when the system has no memory for the first value of a thread; later ones take none.
    bool Set(Object* value) const {
        return TlsSetValue(index_, value) != FALSE;
    }

private:
    DWORD index_;
#else
    bool IsUsable() const {
        return true;
    }
    Object* Get() const {
        return held;
    }
    bool Set(Object* value) const {
        held = value;
        return true;
    }

private:
    static inline thread_local Object* held = nullptr; // one for each type of object
#endif
};

} // namespace qv8
