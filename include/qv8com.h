/**
 * @file
 * Qv8Com: the companion of Qv8Effect. It shows progress, keeps the error status and answers questions about bitmaps.
 *
 * Qv8Effect needs the eight operations of the first group and no more, so another library that offers these eight under
 * the same names can take this one's place. The second group is for applications.
 */
#ifndef QV8COM_H
#define QV8COM_H

#include "qv8platform.h"

#ifdef _WIN32
#define QV8COM_EXPORT
#else
#define QV8COM_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name What Qv8Effect calls
 * @{
 */

/**
 * Opens the progress dialog of the calling thread. Every successful call is undone by PercentDlgClose; a dialog opened
 * while another is open on the same thread covers it until it is closed. On Windows this is a modeless dialog in the
 * middle of its owner, with a progress bar, the percentage in its caption and a Cancel button (the Esc key works too).
 * It comes into sight with the first report after 200 ms; until then the owner can be used and no message is served, so
 * that short work never takes the focus. Where no window can be made then, the work goes on without. Elsewhere it is
 * one line on standard error when that is a terminal, and nothing otherwise.
 * @param owner [window] that is disabled while the dialog is in sight (for a control, the window it is in), or 0; what
 *   is not a window counts as 0.
 * @param title [LPCSTR] caption, or 0 for the default caption.
 * @param unused [0] not used.
 * @return non-zero, or 0 when the dialog could not be made.
 */
QV8COM_EXPORT int QV8API PercentDlgOpen(DWORD_PTR owner, DWORD_PTR title, DWORD_PTR unused);

/**
 * Reports that step `current` of `last` (both counted from 0) is done, within the slice `fromPercent`..`toPercent` of
 * the whole work.
 * @param current [number, from 0] step that is done.
 * @param last [number, from 0] the last step; 0 counts as finished.
 * @param fromPercent,toPercent [percent] the slice.
 * @param progressOwner [number] 0: the dialog of the calling thread is brought up to date, and its messages are served,
 *   both at most every 50 ms; a number from AddProgressOwner: its callback is called; on Windows also a window handle:
 *   it is sent QV8_PROGRESS_MESSAGE; anything else is ignored and the work goes on.
 * @return 0 when the work is to be cancelled, non-zero otherwise.
 */
QV8COM_EXPORT int QV8API PercentProgress(int current, int last, int fromPercent, int toPercent, DWORD progressOwner);

/**
 * Removes the dialog that PercentDlgOpen opened last on the calling thread and enables its owner again. The status of
 * the thread stays, whatever windows call that hear of it. Does nothing when none is open, or when called by a window
 * procedure while PercentProgress serves the messages of the dialog.
 */
QV8COM_EXPORT void QV8API PercentDlgClose(void);

/**
 * Records the outcome of the call that is under way; kept per thread. One that cannot be kept, as the system has no
 * memory for a thread's first, reads as 3, out of memory.
 * @param code [one of the QV8_STATUS values] the outcome.
 */
QV8COM_EXPORT void QV8API SetErrorStatus(int code);

/**
 * Number of entries in the colour table of a locked picture: `biClrUsed` when that is not 0, else 2, 16 or 256 at 1, 4
 * or 8 bits and 0 at any other depth. Counts beyond 0x7FFFFFFF are reported as 0x7FFFFFFF.
 * @param picture [address] of the locked picture.
 */
QV8COM_EXPORT int QV8API DibNumColors(const void* picture);

/**
 * Bytes between the 40-byte header of a locked picture and its first pixel row: four for each entry of its colour
 * table, and 12 more for the channel masks of a 16- or 32-bit BI_BITFIELDS picture with a 40-byte header. Sizes beyond
 * 0x7FFFFFFF are reported as 0x7FFFFFFF.
 * @param picture [address] of the locked picture.
 */
QV8COM_EXPORT int QV8API GetDibPalSize(const void* picture);

/**
 * Layout of a locked 16-bit picture: 1 for BI_RGB (5-5-5), 3 for BI_BITFIELDS with masks 7C00/03E0/001F (5-5-5), 2 for
 * BI_BITFIELDS with masks F800/07E0/001F (5-6-5), -1 for anything else.
 * @param picture [address] of the locked picture.
 */
QV8COM_EXPORT int QV8API GetBmp16Info(const void* picture);

/**
 * Layout of a locked 32-bit picture: 1 for BI_RGB, 3 for BI_BITFIELDS with masks FF0000/FF00/FF, -1 for anything else.
 * @param picture [address] of the locked picture.
 */
QV8COM_EXPORT int QV8API GetBmp32Info(const void* picture);

/** @} */

/**
 * @name For applications
 * @{
 */

/**
 * Receives the progress of a call, 0..100, at every report. `context` is what was given to AddProgressOwner. Returns 0
 * to cancel; it must return, not leave by an exception or a jump.
 */
typedef int(QV8API* Qv8ProgressCallback)(int percent, void* context);

/** The status that the last call of the calling thread left behind, one of the QV8_STATUS values. */
QV8COM_EXPORT int QV8API GetErrorStatus(void);

/**
 * A short English text for a status, such as "out of memory"; never null, not to be freed.
 * @param code [one of the QV8_STATUS values, or any number] the status.
 */
QV8COM_EXPORT LPCSTR QV8API GetErrorStatusText(int code);

/**
 * Registers a callback. Numbers begin at 0x80000001 and are not used again. The callback runs on the thread of the call
 * that reports, and may itself call Qv8Effect. Any number of calls may share one owner. RemoveProgressOwner removes it.
 * @param callback [function] that is told of progress.
 * @param context [any pointer] that is handed to it.
 * @return the number to be passed as `progressOwner`, or 0 when `callback` is null or memory is short.
 */
QV8COM_EXPORT DWORD QV8API AddProgressOwner(Qv8ProgressCallback callback, void* context);

/**
 * Forgets an owner; numbers that are not known are ignored. The callback itself may do so. On another thread it is not
 * to be called while a call that reports to this owner is running.
 * @param progressOwner [number] from AddProgressOwner.
 */
QV8COM_EXPORT void QV8API RemoveProgressOwner(DWORD progressOwner);

/** Name of the message, to be registered with RegisterWindowMessageA, that a window given as `progressOwner` is sent:
   wParam is the percentage, lParam is 0. The window cancels the work by answering with QV8_PROGRESS_CANCEL. */
#define QV8_PROGRESS_MESSAGE "Qv8ComProgress"
#define QV8_PROGRESS_CANCEL 2
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* QV8COM_H */
