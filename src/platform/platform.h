// The platform as the library sees it: <windows.h> on Windows; elsewhere the same names, carried out in this folder.
#pragma once

#include "qv8platform.h"

#ifndef _WIN32
#include "platform/drawing.h"
#endif
