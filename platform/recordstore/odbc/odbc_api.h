#pragma once

// ODBC's own headers. On Windows they need windows.h and do not bring it along.

#ifdef _WIN32
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
