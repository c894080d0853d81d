// Progress of a call: how far it is, and who is told.
#include <algorithm>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "companion/dialog.h"
#include "companion/entry.h"
#include "companion/thread_slot.h"

namespace qv8 {
namespace {

struct ProgressOwner {
    Qv8ProgressCallback callback = nullptr;
    void* context = nullptr;
};

struct OwnerRegistry {
    std::mutex mutex;
    std::unordered_map<DWORD, ProgressOwner> owners;
    DWORD nextNumber = 0x80000001; // window handles are small numbers; 0 when all numbers have been given away
};

OwnerRegistry registry;

struct OpenDialog {
    ProgressDialogPtr dialog;
    OpenDialog* covered = nullptr; // the dialog below
    int reports = 0;               // reports under way; messages served meanwhile must not close it
};

const ThreadSlot<OpenDialog> topDialog;

// Never overflows: the product of a 33-bit and a 32-bit number, and the sum, fit 64 bits.
int PercentOf(int current, int last, int fromPercent, int toPercent) {
    std::int64_t percent = toPercent;
    if (last > 0) {
        percent = fromPercent + (std::int64_t{toPercent} - fromPercent) * current / last;
    }
    return static_cast<int>(std::clamp<std::int64_t>(percent, 0, 100));
}

bool ReportToDialog(int percent) {
    OpenDialog* const open = topDialog.Get();
    if (open == nullptr) {
        return true;
    }
    ++open->reports;
    const bool goesOn = ShowProgress(*open->dialog, percent);
    --open->reports;
    return goesOn;
}

// No callback when the number is not known. Taking a lock may fail for want of memory, here and below.
ProgressOwner FindOwner(DWORD number) {
    try {
        const std::lock_guard guard(registry.mutex);
        const auto found = registry.owners.find(number);
        return found == registry.owners.end() ? ProgressOwner{} : found->second;
    } catch (const std::exception&) {
        return {};
    }
}

// The callback runs unlocked, for it may add and remove owners itself.
bool ReportToOwner(DWORD number, int percent) {
    const ProgressOwner owner = FindOwner(number);
    if (owner.callback != nullptr) {
        return owner.callback(percent, owner.context) != 0;
    }
    return TellWindow(number, percent);
}

DWORD AddOwner(const ProgressOwner& owner) {
    const std::lock_guard guard(registry.mutex);
    if (registry.nextNumber == 0) {
        return 0;
    }
    registry.owners.emplace(registry.nextNumber, owner);
    return registry.nextNumber++;
}

void RemoveOwner(DWORD number) {
    const std::lock_guard guard(registry.mutex);
    registry.owners.erase(number);
}

bool PushDialog(HWND owner, LPCSTR title) {
    auto open = std::make_unique<OpenDialog>();
    open->dialog = MakeProgressDialog(owner, title);
    if (!open->dialog) {
        return false;
    }
    open->covered = topDialog.Get();
    topDialog.Set(open.release());
    return true;
}

} // namespace
} // namespace qv8

extern "C" {

QV8_ENTRY int QV8API PercentDlgOpen(DWORD_PTR owner, DWORD_PTR title, DWORD_PTR) {
    try {
        return qv8::PushDialog(reinterpret_cast<HWND>(owner), reinterpret_cast<LPCSTR>(title)) ? 1 : 0;
    } catch (const std::exception&) {
        return 0;
    }
}

QV8_ENTRY int QV8API PercentProgress(int current, int last, int fromPercent, int toPercent, DWORD progressOwner) {
    const int percent = qv8::PercentOf(current, last, fromPercent, toPercent);
    const bool goesOn = progressOwner == 0 ? qv8::ReportToDialog(percent) : qv8::ReportToOwner(progressOwner, percent);
    return goesOn ? 1 : 0;
}

QV8_ENTRY void QV8API PercentDlgClose(void) {
    qv8::OpenDialog* const top = qv8::topDialog.Get();
    if (top == nullptr || top->reports != 0) {
        return;
    }
    const std::unique_ptr<qv8::OpenDialog> closed(top);
    qv8::topDialog.Set(closed->covered);
}

QV8_ENTRY DWORD QV8API AddProgressOwner(Qv8ProgressCallback callback, void* context) {
    if (callback == nullptr) {
        return 0;
    }
    try {
        return qv8::AddOwner({callback, context});
    } catch (const std::exception&) {
        return 0;
    }
}

QV8_ENTRY void QV8API RemoveProgressOwner(DWORD progressOwner) {
    try {
        qv8::RemoveOwner(progressOwner);
    } catch (const std::exception&) {
        return;
    }
}

} // extern "C"
