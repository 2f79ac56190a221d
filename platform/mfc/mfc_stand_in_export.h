#pragma once

#if defined(_WIN32) && defined(MFC_STAND_IN_BUILDING)
#define MFC_STAND_IN_API __declspec(dllexport)
#elif defined(_WIN32)
#define MFC_STAND_IN_API __declspec(dllimport)
#else
#define MFC_STAND_IN_API __attribute__((visibility("default")))
#endif
