/**
 * @file
 * The version of Qv8Effect. Everything else that tells a version takes it from here: the build, the shared objects, the
 * resources of the Windows files, the packages.
 */
#ifndef QV8VERSION_H
#define QV8VERSION_H

#include "qv8com.h"

#define QV8_VERSION_MAJOR 0
#define QV8_VERSION_MINOR 1
#define QV8_VERSION_PATCH 0

/** As text, "MAJOR.MINOR.PATCH". */
#define QV8_VERSION QV8_VERSION_TEXT(QV8_VERSION_MAJOR, QV8_VERSION_MINOR, QV8_VERSION_PATCH)
#define QV8_VERSION_TEXT(major, minor, patch)                                                                          \
    QV8_VERSION_QUOTED(major) "." QV8_VERSION_QUOTED(minor) "." QV8_VERSION_QUOTED(patch)
#define QV8_VERSION_QUOTED(number) #number

/** As a number that grows with every version: MAJOR * 1000000 + MINOR * 1000 + PATCH. */
#define QV8_VERSION_NUMBER (QV8_VERSION_MAJOR * 1000000 + QV8_VERSION_MINOR * 1000 + QV8_VERSION_PATCH)

#ifdef __cplusplus
extern "C" {
#endif

/** QV8_VERSION_NUMBER of the companion library that is loaded, which may be another than the one built with. */
QV8COM_EXPORT DWORD QV8API GetQv8Version(void);

#ifdef __cplusplus
}
#endif

#endif /* QV8VERSION_H */
