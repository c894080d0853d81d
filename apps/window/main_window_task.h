// Long work of the window, and what becomes of its result.
#ifndef QV8_WINDOW_MAIN_WINDOW_TASK_H
#define QV8_WINDOW_MAIN_WINDOW_TASK_H

#include <memory>
#include <utility>

#include "main_window.h"
#include "pictures/failure.h"
#include "texts.h"

// `make` works on a thread of its own and is told when to stop; `use` is given what it has made, on the thread of the
// window. A Failure is shown as the text `failure` says it.
template <class Make, class Use>
void MainWindow::StartTask(const std::wstring& doing, UINT failure, Make make, Use use) {
    BeginTask(doing);
    task_.Start([this, failure, make, use](const std::atomic<bool>& stop) {
        try {
            const auto made = std::make_shared<decltype(make(stop))>(make(stop));
            wayBack_.Post([this, made, use] {
                EndTask();
                use(*made);
            });
        } catch (const Failure& reason) {
            FailTask(reason.Code() == kExitCancelled ? 0 : failure, reason.what());
        } catch (const std::exception&) {
            FailTask(failure, Utf8(Text(IDS_OUT_OF_MEMORY)));
        }
    });
}

#endif
