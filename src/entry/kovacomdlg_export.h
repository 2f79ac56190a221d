#pragma once

#if defined(_WIN32) && defined(KOVACOMDLG_BUILDING)
#define KOVACOMDLG_API __declspec(dllexport)
#elif defined(_WIN32)
#define KOVACOMDLG_API __declspec(dllimport)
#else
#define KOVACOMDLG_API __attribute__((visibility("default")))
#endif
